#pragma once

#include "Language.h"

#include <QString>
#include <algorithm>
#include <cstddef>

/// A text of the interface, the same for the whole run: made by `Texts` alone. All that are in the
/// program are chained before it starts, whether they are ever shown or not.
class Text {
public:
    Text(const char *ofSection, const char *underKey, const char *inEnglishWords)
        : section(ofSection)
        , key(underKey)
        , english(inEnglishWords)
        , next(first)
    {
        first = this;
    }
    Text(const Text &) = delete;
    Text &operator=(const Text &) = delete;

    /// As the current language has it, looked up at each call; else in English.
    QString operator()() const { return (*this)(inEnglish()); }
    /// Else `shown`: what stands there now, in the language before.
    QString operator()(const QString &shown) const;
    QString inEnglish() const { return QString::fromUtf8(english); }
    /// For a control that is named as its text.
    QString name() const { return QString::fromLatin1(key); }

    const char *const section;
    const char *const key;
    const char *const english;
    const Text *const next;
    inline static constinit const Text *first = nullptr;
};

/// A string literal as an argument of a template.
template <std::size_t size> struct TextLiteral {
    consteval TextLiteral(const char (&literal)[size]) { std::copy_n(literal, size, chars); }
    char chars[size];
};

/// The texts of one section of the language files:
///     constexpr Texts<"frmOpenURL"> texts;
///     setWindowTitle(texts.at<"Caption", "Open URL">());
template <TextLiteral section> struct Texts {
    template <TextLiteral key, TextLiteral english>
    inline static const Text at{section.chars, key.chars, english.chars};

    /// The text of a control or of a line of a table under its name; where the language has none,
    /// `shown`, which stands there now.
    static QString named(const QString &name, const QString &shown)
    {
        return languageText(QString::fromLatin1(section.chars), name, shown);
    }
};
