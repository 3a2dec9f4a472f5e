#pragma once

class QString;

/// What the program says of itself: fixed texts, set when it is built and never translated.
namespace ProgramInfo {
QString title();
/// The name of the desktop's entry for the program and of its icon there.
QString desktopEntry();
/// From the folder of an installed program to that of what ships with it, and to that of the
/// programs that only it starts; relative.
QString sharedFolder();
QString helperFolder();
/// Three numbers with dots, "1.0.0".
QString version();
QString fileDescription();
QString copyright();
QString trademarks();
/// The maker's page, the home page as long as the user has chosen none.
QString homeUrl();
QString makerUrl();
QString makerEmail();
}
