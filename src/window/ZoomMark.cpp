#include "ZoomMark.h"

#include "Texts.h"

#include <QLocale>

using namespace Qt::StringLiterals;

namespace {
constexpr int usual = 100;
constexpr Texts<"frmBrowser"> texts;
}

ZoomMark::ZoomMark(QWidget *parent)
    : StripMark(parent)
{
    setObjectName("cmdZoom"_L1);
}

void ZoomMark::setPercent(int percent)
{
    if (percent == usual) {
        setWords({}, {});
        return;
    }
    setWords(texts.at<"strZoom", "%1%">().arg(QLocale().toString(percent)),
             texts.at<"strZoomTip", "A click shows the page in its usual size again">());
}
