#include "RegExpText.h"

#include "Log.h"

#include <QHash>
#include <QRegularExpression>
#include <QSet>

using namespace Qt::StringLiterals;

namespace {

bool isLoneSurrogate(QStringView text, qsizetype at)
{
    const QChar c = text.at(at);
    if (!c.isSurrogate())
        return false;
    if (c.isHighSurrogate())
        return at + 1 >= text.size() || !text.at(at + 1).isLowSurrogate();
    return at == 0 || !text.at(at - 1).isHighSurrogate();
}

/// The expression engine takes valid text only, so each half of a surrogate pair that stands
/// alone is lent a private character that the text does not hold.
class Borrowed {
public:
    explicit Borrowed(const QString &text)
        : m_text(text)
    {
        QSet<QChar> used;
        bool any = false;
        for (qsizetype i = 0; i < text.size(); ++i) {
            any = any || isLoneSurrogate(text, i);
            if (text.at(i).unicode() >= firstPrivate && text.at(i).unicode() <= lastPrivate)
                used.insert(text.at(i));
        }
        if (any)
            borrow(used);
    }

    QString text() const { return m_text; }

    QString givenBack(QString result) const
    {
        if (m_lent.isEmpty())
            return result;
        for (QChar &c : result)
            c = m_lent.value(c, c);
        return result;
    }

private:
    static constexpr char16_t firstPrivate = 0xe000;
    static constexpr char16_t lastPrivate = 0xf8ff;

    void borrow(const QSet<QChar> &used)
    {
        QHash<QChar, QChar> substitutes;
        char16_t next = firstPrivate;
        QString valid = m_text;
        for (qsizetype i = 0; i < valid.size(); ++i) {
            if (!isLoneSurrogate(m_text, i))
                continue;
            const QChar lone = m_text.at(i);
            if (!substitutes.contains(lone)) {
                while (next <= lastPrivate && used.contains(QChar(next)))
                    ++next;
                substitutes.insert(lone, next <= lastPrivate ? QChar(next++) : QChar(0xfffd));
            }
            valid[i] = substitutes.value(lone);
        }
        for (auto i = substitutes.cbegin(); i != substitutes.cend(); ++i)
            m_lent.insert(i.value(), i.key());
        m_text = valid;
    }

    QString m_text;
    QHash<QChar, QChar> m_lent;
};

/// Appends what "$" at `at` of `replacement` stands for, and returns the position after it.
qsizetype expandDollar(QString &result, const QString &replacement, qsizetype at,
                       const QRegularExpressionMatch &match, int groups, const QString &text)
{
    const QChar next = at + 1 < replacement.size() ? replacement.at(at + 1) : QChar();
    if (next == u'$' || next == u'&' || next == u'`' || next == u'\'') {
        if (next == u'$')
            result += u'$';
        else if (next == u'&')
            result += match.capturedView();
        else if (next == u'`')
            result += QStringView(text).left(match.capturedStart());
        else
            result += QStringView(text).mid(match.capturedEnd());
        return at + 2;
    }
    for (const int digits : {2, 1}) {
        const QStringView number = QStringView(replacement).mid(at + 1, digits);
        bool ok = number.size() == digits && number.front().isDigit();
        const int group = ok ? number.toInt(&ok) : 0;
        if (ok && group >= 1 && group <= groups) {
            result += match.capturedView(group);
            return at + 1 + digits;
        }
    }
    result += u'$';
    return at + 1;
}

}

namespace RegExpText {

QString replaceAll(const QRegularExpression &expression, const QString &replacement,
                   const QString &text)
{
    const Borrowed borrowed(text);
    const QString subject = borrowed.text();
    const int groups = expression.captureCount();
    QString result;
    qsizetype done = 0;
    QRegularExpressionMatchIterator matches = expression.globalMatch(subject);
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        result += QStringView(subject).sliced(done, match.capturedStart() - done);
        for (qsizetype i = 0; i < replacement.size();) {
            if (replacement.at(i) == u'$')
                i = expandDollar(result, replacement, i, match, groups, subject);
            else
                result += replacement.at(i++);
        }
        done = match.capturedEnd();
    }
    result += QStringView(subject).sliced(done);
    return borrowed.givenBack(result);
}

}
