#include "TestCertificates.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSslCertificate>
#include <QSslKey>

using namespace Qt::StringLiterals;

namespace {
/// What went wrong with a program; empty when it did its work.
QString run(const QString &folder, const QString &program, const QString &arguments)
{
    QProcess process;
    process.setWorkingDirectory(folder);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments.split(u' '));
    constexpr int limit = 60000;
    if (process.waitForFinished(limit) && process.exitCode() == 0)
        return {};
    return program + ": "_L1 + process.errorString() + u' '
        + QString::fromLocal8Bit(process.readAll());
}

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
}

namespace TestCertificates {

QString make(const QString &folder, const QString &home)
{
    const QString store = home + "/.pki/nssdb"_L1;
    QFile names(folder + "/names"_L1);
    if (!QDir().mkpath(store) || !names.open(QIODevice::WriteOnly))
        return u"no folder for certificates"_s;
    names.write("subjectAltName=DNS:localhost,IP:127.0.0.1\nbasicConstraints=CA:FALSE\n");
    names.close();
    const QList<std::pair<QString, QString>> steps{
        {u"openssl"_s,
         u"req -x509 -newkey rsa:2048 -nodes -keyout ca.key -out ca.pem -days 5 -subj "
         "/CN=TestAuthority -addext keyUsage=critical,keyCertSign"_s},
        {u"openssl"_s,
         u"req -newkey rsa:2048 -nodes -keyout server.key -out server.csr -subj /CN=localhost"_s},
        {u"openssl"_s,
         u"x509 -req -in server.csr -CA ca.pem -CAkey ca.key -CAcreateserial -out server.pem "
         "-days 5 -extfile names"_s},
        {u"certutil"_s, u"-N -d sql:"_s + store + u" --empty-password"_s},
        {u"certutil"_s, u"-A -n TestAuthority -t C,, -i ca.pem -d sql:"_s + store},
    };
    for (const auto &[program, arguments] : steps) {
        const QString wrong = run(folder, program, arguments);
        if (!wrong.isEmpty())
            return wrong;
    }
    return {};
}

QSslConfiguration server(const QString &folder)
{
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setPrivateKey(QSslKey(bytesOf(folder + "/server.key"_L1), QSsl::Rsa));
    configuration.setLocalCertificate(QSslCertificate(bytesOf(folder + "/server.pem"_L1)));
    return configuration;
}

}
