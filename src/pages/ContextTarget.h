#pragma once

#include <QPoint>
#include <QStringList>
#include <QUrl>

class QWebEngineContextMenuRequest;

/// What the user opened the menu of a page on, as it was then: a value, which no page changes
/// while the menu stands. Its texts and addresses are the page's word; an address is no longer
/// than the engine takes one (2 MB).
struct ContextTarget {
    enum class Link {
        None,
        /// It leads to a page that this one may lead to.
        Opens,
        /// It is another program's, if anyone's ("mailto:").
        Outside,
        /// It opens nowhere but where it stands ("javascript:"), or not at all.
        Fixed
    };
    enum class Media { None, Image, Canvas, Video, Audio };

    /// Upper left corner of the menu, on the screen, pixels.
    QPoint place;
    /// The page itself.
    QUrl page;
    bool canGoBack = false;
    bool canGoForward = false;

    Link linkIs = Link::None;
    QUrl link;
    QString linkText;

    Media media = Media::None;
    QUrl mediaUrl;
    /// It can be shown by itself.
    bool mediaOpens = false;
    bool mediaFailed = false;
    bool mediaPaused = false;
    bool mediaMuted = false;
    bool mediaRepeats = false;
    bool mediaHasSound = false;
    bool mediaHasControls = false;
    bool mediaMayHaveControls = false;
    bool mediaSaves = false;

    /// All of it, however long.
    QString selection;

    bool isField = false;
    /// It takes formatted text and pictures.
    bool isRichField = false;
    bool canUndo = false;
    bool canRedo = false;
    bool canCut = false;
    bool canCopy = false;
    bool canPaste = false;
    bool canDelete = false;
    bool canSelectAll = false;
    /// Empty where the word is spelled well.
    QString misspelled;
    QStringList suggestions;
};

/// What `request` tells of a page at `page`, whose menu comes up at `place` of the screen.
ContextTarget contextTargetOf(const QWebEngineContextMenuRequest &request, const QUrl &page,
                              const QPoint &place);
