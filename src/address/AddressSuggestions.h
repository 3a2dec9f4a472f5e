#pragma once

#include <QList>
#include <QListView>
#include <QString>

class QStandardItemModel;

/// A page that an address bar proposes while its user types.
struct AddressSuggestion {
    QString title;
    QString address;
};

/// The pages proposed under an address bar, by title and address: a part of the bar's window that
/// never has the keyboard, so that typing goes on. It goes with the next click elsewhere, and as
/// the window goes or changes.
class AddressSuggestions : public QListView {
    Q_OBJECT

public:
    explicit AddressSuggestions(QWidget &bar);

    /// Shows these, none of them chosen; hides where there are none.
    void propose(const QList<AddressSuggestion> &suggestions);
    /// Goes on by so many, over both ends; from none to the first or the last, and back to none.
    void step(int by);
    /// The one chosen; empty: none.
    QString current() const;

signals:
    void clicked(const QString &address);

protected:
    void hideEvent(QHideEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void place();

    QWidget &m_bar;
    QStandardItemModel *m_rows;
};
