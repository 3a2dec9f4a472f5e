#include "UseMark.h"

#include "Texts.h"
#include "UseDot.h"

using namespace Qt::StringLiterals;

namespace {
/// Pixels.
constexpr int dotSize = 9;
}

UseMark::UseMark(QWidget *parent)
    : StripMark(parent)
{
    setObjectName("cmdEndUse"_L1);
}

void UseMark::setUse(const QString &text)
{
    const QString tip =
        Texts<"Permissions">::at<"strEndUse", "%1. A click ends it, and loads the page anew.">()
            .arg(text);
    setWords(text, tip);
}

int UseMark::signWidth() const
{
    return dotSize;
}

void UseMark::paintSign(QPainter &painter, const QRect &place)
{
    paintUseDot(painter, place);
}
