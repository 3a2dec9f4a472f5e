#pragma once

class Frame;
class QObject;

/// The favorites bar as View > Refresh knows it: the frame's control named "FavoritesBar1", with a
/// property `Initialised` and an invokable `Refresh`.
namespace FocusedFavorites {
/// The bar while it holds the frame's active control and its `Initialised` is true; else null.
QObject *bar(Frame &frame);
void refresh(QObject &bar);
}
