#pragma once

class QIcon;

/// The program's picture, sharp at every size.
QIcon programIcon();
