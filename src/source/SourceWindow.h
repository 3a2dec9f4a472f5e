#pragma once

#include "CommonDialog.h"
#include "Frame.h"
#include "WriteResult.h"

#include <QMainWindow>
#include <functional>

class FindBar;
class QLabel;
class QProgressBar;
class SourceEditor;
class Text;

/// A window with an editor for HTML source, of a page or of a file. It has no link to where the
/// source came from. It deletes itself when closed; text that was edited and not saved is then
/// kept as a copy in AppData/Recovered.
class SourceWindow : public QMainWindow {
    Q_OBJECT

public:
    SourceWindow();
    ~SourceWindow() override;

    /// Opens a window on a page's markup, the caret at its start.
    static SourceWindow *openOn(const QString &html, const QString &address,
                                Privacy privacy = Privacy::Ordinary);
    /// It holds text of a private page: no copy is kept of what is not saved.
    void setPrivate();
    bool isPrivate() const { return m_isPrivate; }
    /// What Help > About does; it is given the window to stand over.
    static void setAboutHandler(const std::function<void(QWidget *)> &handler);

    SourceEditor &editor() const { return *m_editor; }
    /// What the title names: a page's address or a file.
    void setSubject(const QString &subject);

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    /// What an item of the Edit menu does with the source, or with the field that has the focus in
    /// its place.
    template <auto inText, auto inField> void edit();
    void buildMenus();
    void buildStatusBar();
    QAction *addTool(const Text &caption, const QKeySequence &shortcut);
    void connectEditor();

    void fileOpen();
    void fileSave();
    void fileExit();
    void helpAbout();
    void openFile(const QString &file);
    void goToLine();
    void setEdited(bool edited);
    WriteResult keepCopy() const;

    SourceEditor *m_editor;
    FindBar *m_findBar;
    QLabel *m_state = nullptr;
    QProgressBar *m_progress = nullptr;
    CommonDialog m_dialog;
    QString m_subject;
    bool m_edited = false;
    bool m_isPrivate = false;
    /// That closing the window loses its text.
    bool m_toldOfLoss = false;
};
