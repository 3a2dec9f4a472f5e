#include "CoolBarDrag.h"

void CoolBarDrag::start(CoolBand *, QPoint) { }
void CoolBarDrag::move(QPoint) { }
void CoolBarDrag::drop(QPoint) { }
void CoolBarDrag::cancel() { }
void CoolBarDrag::paint(QPainter &) const { }
