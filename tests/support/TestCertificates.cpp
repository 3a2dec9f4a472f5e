#include "TestCertificates.h"

#include <QDateTime>
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

void check(const QString &wrong)
{
    if (!wrong.isEmpty())
        qFatal("%s", qPrintable(wrong));
}

void write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    check(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() ? QString() : path);
}

QString inYears(int years)
{
    // Well before now where it is to be valid at once.
    return QDateTime::currentDateTimeUtc().addYears(years).addDays(-1).toString(
        u"yyyyMMddHHmmss'Z'"_s);
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

QSslConfiguration shaped(const QString &folder, const Shape &shape)
{
    static int count = 0;
    const QString own = folder + u"/shaped%1"_s.arg(++count);
    QDir().mkpath(own);
    write(own + "/names"_L1,
          "subjectAltName=" + shape.names.join(u',').toLatin1() + "\nbasicConstraints=CA:FALSE\n");
    write(own + "/index"_L1, {});
    write(own + "/ca.conf"_L1,
          "[ca]\ndefault_ca=test\n[test]\nnew_certs_dir=.\ndatabase=index\nrand_serial=yes\n"
          "policy=any\n[any]\ncommonName=optional\norganizationName=optional\n");
    const QString key = u"-newkey rsa:%1 -nodes -keyout server.key"_s.arg(shape.bits);
    QString signer = folder;
    if (shape.signer == Signer::Stranger) {
        signer = own;
        check(run(own, u"openssl"_s,
                  u"req -x509 -newkey rsa:2048 -nodes -keyout ca.key -out ca.pem -days 5 -subj "
                  "/CN=Stranger"_s));
    }
    check(run(own, u"openssl"_s, u"req "_s + key + u" -out server.csr -subj "_s + shape.subject));
    const QString signing = shape.signer == Signer::Itself
        ? u"-selfsign -keyfile server.key"_s
        : u"-cert %1/ca.pem -keyfile %1/ca.key"_s.arg(signer);
    check(run(own, u"openssl"_s,
              u"ca -batch -config ca.conf -notext -extfile names -in server.csr -out server.pem "
              "-md %1 -startdate %2 -enddate %3 "_s.arg(shape.digest, inYears(shape.from),
                                                        inYears(shape.until))
                  + signing));
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setPrivateKey(QSslKey(bytesOf(own + "/server.key"_L1), QSsl::Rsa));
    QList<QSslCertificate> chain{QSslCertificate(bytesOf(own + "/server.pem"_L1))};
    if (shape.signer != Signer::Itself)
        chain.append(QSslCertificate(bytesOf(signer + "/ca.pem"_L1)));
    configuration.setLocalCertificateChain(chain);
    return configuration;
}

void allowWeakServers(const QString &folder)
{
    const QString path = folder + "/weak.conf"_L1;
    write(path,
          "openssl_conf=all\n[all]\nssl_conf=ssl\n[ssl]\nsystem_default=weak\n[weak]\n"
          "CipherString=DEFAULT:@SECLEVEL=0\n[req]\ndistinguished_name=names\n[names]\n");
    qputenv("OPENSSL_CONF", path.toUtf8());
}

}
