#pragma once

#include "Desk.h"
#include "DeskKeys.h"
#include "IniText.h"

#include <array>
#include <map>
#include <optional>

/// Reads a desk from the bytes of its file: first what stands where, then what it means.
class DeskReader : private IniText::Walker {
public:
    /// Characters.
    static constexpr int longestTitle = 999;

    /// `file` is to outlive it.
    explicit DeskReader(QByteArrayView file);

    Desk desk();

private:
    /// The bytes behind each key; a null view for one that is missing.
    using Values = std::array<QByteArrayView, DeskKeys::names.size()>;
    enum class Part { Other, Addresses, Count, Places };

    void section(QByteArrayView name) override;
    void key(QByteArrayView name, QByteArrayView value) override;
    Part partOf(QByteArrayView name);

    QString text(QByteArrayView value, int characters);
    /// The whole number nearest to the one that stands there.
    std::optional<int> number(QByteArrayView value, int least, int most);
    bool flag(QByteArrayView value);
    QRect place(const Values &values);
    QString address(QByteArrayView value, bool hasSection);
    DeskWindow window(const Values &values);

    QByteArrayView m_file;
    Part m_part = Part::Other;
    Values *m_values = nullptr;
    bool m_hasAddresses = false;
    bool m_hasCount = false;
    std::map<qint32, QByteArrayView> m_addresses;
    QByteArrayView m_count;
    std::map<qint32, Values> m_windows;
    std::optional<Values> m_frame;
    std::optional<TextEncoding::Encoding> m_encoding;
};
