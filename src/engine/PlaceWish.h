#pragma once

#include <QDeadlineTimer>
#include <QList>
#include <QUrl>

class QEvent;

/// The user's wish to say himself where a file of a page goes: he held Shift as he followed a
/// link, or had the page's menu save what the page itself made. The engine does not say which act a
/// download comes from: it is the first one after the click, and of the menu the one of that very
/// address. Each act counts for one download only, whatever the page does.
class PlaceWish {
public:
    PlaceWish() = default;
    /// What is still wanted is so of what comes without a page.
    ~PlaceWish();
    PlaceWish(const PlaceWish &) = delete;
    PlaceWish &operator=(const PlaceWish &) = delete;

    /// An event on its way to the page: an act takes the place of the one before.
    void noteEvent(const QEvent &event);
    /// The page's menu has asked the engine for what is at `url`.
    void noteMenu(const QUrl &url);
    /// The page opens a window at the user's act, which goes on there.
    void moveTo(PlaceWish &window);
    /// The act has led to a page.
    void noteArrival() { m_act = QDeadlineTimer(0); }
    /// For a download of `url` of the page: whether its place is the user's to choose.
    bool take(const QUrl &url);
    /// For one whose page has gone before the engine told of it.
    static bool takeOfGone(const QUrl &url);

private:
    struct Menu {
        QUrl url;
        QDeadlineTimer lasts;
    };

    QDeadlineTimer m_act = QDeadlineTimer(0);
    QList<Menu> m_menu;
};
