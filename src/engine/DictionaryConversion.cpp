#include "DictionaryConversion.h"

#include "Log.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QLibraryInfo>
#include <QPointer>
#include <QProcess>
#include <QTimer>
#include <chrono>
#include <filesystem>
#include <utility>

using namespace Qt::StringLiterals;

namespace {
/// The largest dictionaries that systems ship take a few seconds.
constexpr std::chrono::seconds longest(60);

QString converter()
{
    return QLibraryInfo::path(QLibraryInfo::LibraryExecutablesPath) + "/qwebengine_convert_dict"_L1;
}

/// Takes the place of what was there.
bool put(const QString &made, const QString &target)
{
    std::error_code error;
    std::filesystem::rename(QFile::encodeName(made).toStdString(),
                            QFile::encodeName(target).toStdString(), error);
    return !error;
}

/// One run of the converter, and gone after it.
class Conversion : public QProcess {
    Q_OBJECT

public:
    Conversion(const QString &dictionary, const QString &target);
    void run();

signals:
    void over(bool isDone);

private:
    void finish(bool isDone);

    QString m_dictionary;
    QString m_target;
    QString m_made;
    bool m_isOver = false;
};

/// By what they make.
QHash<QString, QPointer<Conversion>> &running()
{
    static QHash<QString, QPointer<Conversion>> all;
    return all;
}

Conversion::Conversion(const QString &dictionary, const QString &target)
    : QProcess(qApp)
    , m_dictionary(dictionary)
    , m_target(target)
    , m_made(target + u".%1"_s.arg(QCoreApplication::applicationPid()))
{
    setStandardOutputFile(nullDevice());
    setStandardErrorFile(nullDevice());
    connect(this, &QProcess::errorOccurred, this, [this](ProcessError error) {
        if (error == FailedToStart)
            finish(false);
    });
    connect(this, &QProcess::finished, this, [this](int code, ExitStatus status) {
        finish(status == NormalExit && code == 0 && QFileInfo(m_made).size() > 0
               && put(m_made, m_target));
    });
    QTimer::singleShot(longest, this, &QProcess::kill);
}

void Conversion::run()
{
    start(converter(), {m_dictionary, m_made});
}

void Conversion::finish(bool isDone)
{
    if (std::exchange(m_isOver, true))
        return;
    if (!isDone) {
        qCWarning(lcEngine) << "the dictionary" << m_dictionary << "cannot be converted";
        QFile::remove(m_made);
    }
    running().remove(m_target);
    emit over(isDone);
    deleteLater();
}
}

namespace DictionaryConversion {

bool isPossible()
{
    return QFileInfo(converter()).isExecutable();
}

void begin(const QString &dictionary, const QString &target, QObject *context,
           const std::function<void(bool isDone)> &done)
{
    QPointer<Conversion> &conversion = running()[target];
    const bool isNew = !conversion;
    if (isNew)
        conversion = new Conversion(dictionary, target);
    QObject::connect(conversion, &Conversion::over, context, done);
    if (isNew)
        conversion->run();
}

}

#include "DictionaryConversion.moc"
