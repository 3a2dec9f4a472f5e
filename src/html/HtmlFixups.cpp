#include "HtmlFixups.h"

#include <QString>

using namespace Qt::StringLiterals;

namespace HtmlFixups {

Range nextPlainText(QStringView text, qsizetype from)
{
    while (true) {
        const qsizetype start = text.indexOf(u'>', from);
        if (start < 0)
            return {};
        const qsizetype less = text.indexOf(u'<', start);
        if (less < 0)
            return {};
        // Between "=" and "<" there must be no ">", and no "<" is before `less`, so only the last
        // "=" before it can do.
        const QStringView between = text.sliced(start + 1, less - start - 1);
        const qsizetype equals = between.lastIndexOf(u'=');
        if (equals < 0 || between.indexOf(u'>', equals) >= 0) {
            from = less;
            continue;
        }
        const qsizetype greater = text.indexOf(u'>', less);
        const qsizetype area = (greater < 0 ? text.size() : greater) - less;
        return {start, less + text.sliced(less, area).lastIndexOf(u'<') + 1};
    }
}

Range nextComment(QStringView text, qsizetype from)
{
    const qsizetype start = text.indexOf("<!--"_L1, from);
    if (start < 0)
        return {};
    // At least one character stands inside.
    const qsizetype close = text.indexOf("-->"_L1, start + 5);
    if (close < 0)
        return {};
    return {start, close + 3};
}

}
