#pragma once

#include <QMainWindow>

#include "CommandTable.h"
#include "Frame.h"
#include "MainMenu.h"
#include "StartUp.h"

class CommandBars;
class ContextMenus;
class CoolBar;
class DownloadStrip;
class FavoritesBar;
class FrameAddress;
class FrameBody;
class FrameOpener;
class LinksBar;
class MdiArea;
class SearchBar;
class TabStrip;
class ToolBar;
class AddressBox;

/// The one frame window: menu bar, tool bar strip, address bar and tabs around the browser
/// windows. It puts the parts together and answers for them; what each does is theirs.
class MainWindow : public QMainWindow, public Frame, public StartUpFrame {
    Q_OBJECT

public:
    MainWindow();
    ~MainWindow() override;

    /// What the program was started on: an address or a profile file, perhaps in double quotes.
    void setCommandLine(const QString &text, Privacy privacy = Privacy::Ordinary)
    {
        m_commandLine = text;
        m_startPrivacy = privacy;
    }
    /// To be called once every command group has registered its handlers.
    void closeCommandTable() { m_commands.close(); }
    /// True once the user has left the program, perhaps while it was still starting: nothing opens
    /// in the frame any more.
    bool isClosed() const { return m_closed; }
    /// Ends the program without the question: what is kept at the end is kept, every form closes,
    /// and the event loop is left. Also while a dialog is open.
    /// `isByUser`: he called for the end himself, or for that of his session.
    void leave(bool isByUser = true);

    FrameOpener &opener() { return *m_opener; }
    /// Shows a strip below the windows, above that of the downloads; F6 reaches it.
    void addNotice(QWidget &notice);
    /// What a line of the menus that open on pages does (`contextTable`).
    void handleAt(const QString &line, const ContextCommand &command)
    {
        m_commands.handleAt(line, command);
    }

    /// Whatever it was covered by or put away as.
    void comeToFront();

    // StartUpFrame
    void load() override;
    void translate() override;

    // Frame
    QWidget *window() override { return this; }
    void adopt(QMdiSubWindow *child) override;
    QMdiSubWindow *activeChild() const override;
    void openBrowserWindow(const QString &url, WindowState state) override;
    void openPrivateWindow(const QString &url, WindowState state) override;
    void navigateActive(const QString &url) override;
    WindowState newWindowState() const override;
    bool openProfile(const QString &file, bool quiet) override;
    WindowTabs &windowTabs() override;
    void setAddressText(const QString &url) override;
    void addAddress(const QString &url, bool showText) override;
    void keepTyping(const Handler &change) override;
    QAction *menuItem(const QString &name) const override;
    void handle(const QString &menuName, const Handler &handler) override;
    void handleToggle(const QAction *item, const ToggleHandler &handler) override;
    void beforeOpening(const QString &menuName, const Handler &rule) override;
    void run(const QString &menuName) override;
    int navigationFlags() const override { return m_navigationFlags; }
    void setNavigationFlags(int flags) override { m_navigationFlags = flags; }

signals:
    /// All windows are still there.
    void leaving(bool isByUser);
    void translated();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void makeBands();
    void connectDownloads();
    void registerCommands();
    void joinPlaces();
    void unloadForms();

    MainMenu m_menu;
    CommandTable m_commands;
    ContextMenus *m_contextMenus;
    MdiArea *m_windows;
    CoolBar *m_coolBar;
    FrameBody *m_body;
    ToolBar *m_functionsBar;
    ToolBar *m_browserBar;
    ToolBar *m_linksToolBar;
    TabStrip *m_tabs;
    AddressBox *m_addressBox;
    FrameAddress *m_address;
    CommandBars *m_commandBars;
    LinksBar *m_links;
    FavoritesBar *m_favoritesBar;
    SearchBar *m_searchBar;
    /// What is to be told beside all windows.
    QWidget *m_notices;
    DownloadStrip *m_downloads;
    FrameOpener *m_opener;
    QString m_commandLine;
    Privacy m_startPrivacy = Privacy::Ordinary;
    int m_navigationFlags = 0;
    bool m_loaded = false;
    bool m_closed = false;
};
