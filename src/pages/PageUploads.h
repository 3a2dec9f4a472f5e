#pragma once

#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QWebEnginePage>
#include <functional>

class DesktopFileDialog;
class QEventLoop;
class WebPage;

/// The files that the user chooses for a page. The engine waits for each choice alone: all pages
/// and windows go on. One dialog at a time, and one for each time that the user does something
/// with the page; it goes when the page does.
class PageUploads : public QObject {
    Q_OBJECT

public:
    using Mode = QWebEnginePage::FileSelectionMode;

    /// Becomes the page's child.
    explicit PageUploads(WebPage &page);

    /// Waits for the user; empty where he chose nothing. `types` as a page names them: kinds of
    /// files, and endings with a dot.
    QStringList choose(Mode mode, const QStringList &types);

private:
    /// Those of them that are files; the user is told of the first other one.
    QStringList readable(const QStringList &files) const;
    QStringList askForFiles(Mode mode, const QStringList &types);
    void dropDialog(const QEventLoop &loop);
    bool mayTakeFolder(const QString &folder);
    bool askForFolder(const QString &folder, int files);
    bool waitFor(const std::function<void(QEventLoop &loop)> &begin);
    void noteFolder(const QString &path) const;

    WebPage &m_page;
    QPointer<DesktopFileDialog> m_dialog;
    bool m_isChoosing = false;
    /// The page may ask once more.
    bool m_mayAsk = true;
};
