#pragma once

#include <QObject>
#include <QStringList>

class Frame;
class QMenu;

/// The profiles that were opened or saved last, most recent first: kept among the settings, and
/// listed in a menu.
class RecentProfiles : public QObject {
    Q_OBJECT

public:
    static constexpr int most = 10;

    /// Fills `menu` whenever it opens.
    RecentProfiles(QMenu &menu, QObject *parent);

    /// Their files, with whole paths. Nothing looks whether they are there: that may take long.
    static QStringList files();
    /// The file goes to the front. One that could not be kept or opened again is left out.
    static void add(const QString &file);
    static void remove(const QString &file);
    /// In their order, what each is called: its name, and where two have one, its folder too.
    static QStringList captions(const QStringList &files);
    /// Says that it is not there any more, where that is so, and forgets it.
    static void open(Frame &frame, const QString &file);

signals:
    void chosen(const QString &file);

private:
    void fill(QMenu &menu);
};
