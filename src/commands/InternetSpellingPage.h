#pragma once

#include <QStringList>
#include <QWidget>

struct EngineOptions;
class QCheckBox;
class QLabel;
class QListWidget;

/// The fourth page of the internet options: whether the spelling of what is typed into pages is
/// checked, and by which of the dictionaries that the system has.
class InternetSpellingPage : public QWidget {
    Q_OBJECT

public:
    InternetSpellingPage();

    void fill(const EngineOptions &options);
    void collect(EngineOptions &options) const;

private:
    void addDictionary(const QString &tag, bool isChosen);
    QStringList chosen() const;

    QCheckBox *m_check;
    QListWidget *m_list;
    QLabel *m_none;
    /// Chosen, but not on this system today.
    QStringList m_missing;
    QStringList m_ofDesktop;
};
