#pragma once

#include <QLabel>

class QUrl;

/// Says for some seconds over a page that fills the screen whose page it is and how to leave: with
/// nothing of the program in sight, a page can paint it, address and all. Deletes itself.
class FullScreenNotice : public QLabel {
    Q_OBJECT

public:
    /// `origin` is the site that asked; `view` shows its page.
    FullScreenNotice(const QUrl &origin, QWidget *view);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void place();
};
