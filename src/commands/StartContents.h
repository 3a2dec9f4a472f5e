#pragma once

#include "StartPage.h"

#include <QObject>

class Frame;
class SearchBar;

/// What the start page offers: a search, the favorites, and the profiles and windows that were open
/// last. What is chosen opens as from the menus.
class StartContents : public QObject, public StartParts {
public:
    /// At most so many favorites; the others are in their bar.
    static constexpr int mostFavorites = 60;

    /// Goes with the frame's window.
    StartContents(Frame &frame, const SearchBar &search);
    ~StartContents() override;

    QJsonObject contents() const override;
    void choose(const QString &kind, const QString &value) override;

private:
    Frame &m_frame;
    const SearchBar &m_search;
};
