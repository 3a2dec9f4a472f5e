#pragma once

class QPainter;
class QRect;

/// The mark of a camera, a microphone or a screen in use: the red light of a recorder, with a rim
/// that keeps it apart from any ground.
void paintUseDot(QPainter &painter, const QRect &place);
