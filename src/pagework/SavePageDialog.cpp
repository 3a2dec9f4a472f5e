#include "SavePageDialog.h"

#include "FileName.h"
#include "MsgBox.h"
#include "Texts.h"

#include <QDir>
#include <QFileInfo>
#include <QLineEdit>
#include <QMimeDatabase>
#include <QStandardPaths>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
constexpr Texts<"PageSaver"> texts;

/// The first is the one that names get.
const QStringList webEndings{u".html"_s, u".htm"_s};
const QStringList archiveEndings{u".mhtml"_s, u".mht"_s};

QString filter(const QString &caption, const QStringList &endings)
{
    QStringList patterns;
    for (const QString &ending : endings)
        patterns.append(u'*' + ending);
    return caption + " ("_L1 + patterns.join(u' ') + u')';
}

/// In the order of the kinds.
QStringList filters()
{
    return {filter(texts.at<"strComplete", "Web page, complete">(), webEndings),
            filter(texts.at<"strSingleFile", "Web page, single file">(), archiveEndings),
            filter(texts.at<"strSourceOnly", "Web page, source only">(), webEndings)};
}

bool endsInOneOf(const QString &name, const QStringList &endings)
{
    return std::any_of(endings.begin(), endings.end(), [&name](const QString &ending) {
        return name.endsWith(ending, Qt::CaseInsensitive);
    });
}

QString withoutKnownEnding(const QString &name)
{
    for (const QString &ending : webEndings + archiveEndings) {
        if (name.endsWith(ending, Qt::CaseInsensitive))
            return name.chopped(ending.size());
    }
    return name;
}

QString firstFolder()
{
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QFileInfo(documents).isDir() ? documents : QDir::homePath();
}

QString endingOfType(const QString &type)
{
    const QString suffix = QMimeDatabase().mimeTypeForName(type).preferredSuffix();
    return suffix.isEmpty() ? QString() : u'.' + suffix;
}
}

SavePageDialog::SavePageDialog(QWidget *owner, const Chosen &chosen)
    : QFileDialog(owner, texts.at<"Caption", "Save Page As">(), firstFolder())
    , m_chosen(chosen)
{
    setObjectName("dlgSavePage"_L1);
    setAttribute(Qt::WA_DeleteOnClose);
    setAcceptMode(QFileDialog::AcceptSave);
    setFileMode(QFileDialog::AnyFile);
    connect(this, &QFileDialog::filterSelected, this, &SavePageDialog::followKind);
    connect(this, &QFileDialog::fileSelected, this, &SavePageDialog::take);
}

SavePageDialog *SavePageDialog::forMarkup(QWidget *owner, const QString &title,
                                          const Chosen &chosen)
{
    auto *dialog = new SavePageDialog(owner, chosen);
    dialog->m_isMarkup = true;
    dialog->setNameFilters(filters());
    dialog->selectFile(FileName::from(title, webEndings.first(), texts.at<"strPage", "Page">()));
    return dialog;
}

SavePageDialog *SavePageDialog::forFile(QWidget *owner, const QString &name, const QString &type,
                                        const Chosen &chosen)
{
    auto *dialog = new SavePageDialog(owner, chosen);
    dialog->setNameFilters({texts.at<"strAllFiles", "All files">() + " (*)"_L1});
    const QString own = FileName::endingOf(FileName::from(name, {}, {}));
    dialog->m_ending = own.isEmpty() ? endingOfType(type) : own;
    dialog->selectFile(FileName::from(name, dialog->m_ending, texts.at<"strPage", "Page">()));
    return dialog;
}

SavePageDialog::Kind SavePageDialog::kind() const
{
    const qsizetype chosen = nameFilters().indexOf(selectedNameFilter());
    return m_isMarkup ? Kind(std::max<qsizetype>(0, chosen)) : Kind::AsItCame;
}

/// With an ending, as the kind of file asks for it.
QString SavePageDialog::completed(const QString &file) const
{
    if (!m_isMarkup)
        return FileName::endingOf(QFileInfo(file).fileName()).isEmpty() ? file + m_ending : file;
    const QStringList &endings = kind() == Kind::SingleFile ? archiveEndings : webEndings;
    return endsInOneOf(file, endings) ? file : withoutKnownEnding(file) + endings.first();
}

void SavePageDialog::followKind()
{
    auto *edit = findChild<QLineEdit *>(u"fileNameEdit"_s);
    if (edit && m_isMarkup && !edit->text().isEmpty())
        edit->setText(completed(edit->text()));
}

/// The whole name is set before the dialog asks what is to become of a file of that name.
void SavePageDialog::accept()
{
    auto *edit = findChild<QLineEdit *>(u"fileNameEdit"_s);
    const QString typed = edit ? edit->text() : QString();
    const bool isFile = !typed.isEmpty() && !typed.endsWith(u'/') && typed != ".."_L1
        && !QFileInfo(directory().absoluteFilePath(typed)).isDir();
    if (isFile)
        edit->setText(completed(typed));
    QFileDialog::accept();
}

/// The desktop's own dialog does not know what becomes of the name.
void SavePageDialog::take(const QString &file)
{
    const QString whole = completed(file);
    if (whole == file || !QFileInfo::exists(whole)) {
        m_chosen(whole, kind());
        return;
    }
    MsgBox::ask(parentWidget(),
                texts.at<"strReplace", "%1 is already there. Replace it?">().arg(whole),
                windowTitle(), [chosen = m_chosen, whole, kind = kind()](MsgBox::Answer answer) {
                    if (answer == MsgBox::Answer::Yes)
                        chosen(whole, kind);
                });
}
