#pragma once

#include <QProcessEnvironment>
#include <QTemporaryDir>

/// A home folder that nothing was kept in yet.
class FreshHome {
public:
    QString path() const { return m_folder.path(); }
    /// What a program is to be started with.
    QProcessEnvironment environment() const;
    /// Makes it the home of this program.
    void use() const;

private:
    QTemporaryDir m_folder;
};

/// Makes an application folder whose program asks and shows nothing at its start and end.
void makeQuietFolder(const QString &path);
/// The same with settings of one's own.
void makeFolder(const QString &path, const QByteArray &settings);

/// Whether the program draws without a graphics device. A bare view that is to draw in the same way
/// needs QT_QUICK_BACKEND=software.
bool drawsInSoftware();
