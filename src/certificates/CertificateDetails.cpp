#include "CertificateDetails.h"

#include "Captioned.h"
#include "CertificateText.h"

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QListWidget>
#include <QRegularExpression>
#include <QTextEdit>
#include <QTextTable>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {
constexpr qsizetype longestChain = 20;
/// Rows of the list that are seen at once, if there are as many.
constexpr int mostRows = 4;

constexpr Texts<"Certificate"> texts;

void write(QTextTable &table, int row, int column, const QString &text, bool isBold)
{
    QTextCharFormat format;
    format.setFontWeight(isBold ? QFont::Bold : QFont::Normal);
    table.cellAt(row, column).firstCursorPosition().insertText(text, format);
}

/// A fingerprint in rows of equal length, so that the eye finds its way.
QString inRows(const QString &value)
{
    static const QRegularExpression bytes(u"^(?:[0-9A-Fa-f]{2}:)+[0-9A-Fa-f]{2}$"_s);
    constexpr qsizetype row = 48;
    QString result = value;
    if (bytes.match(value).hasMatch()) {
        for (qsizetype at = row; at < result.size(); at += row + 1)
            result.insert(at, u'\n');
    }
    return result;
}

QTextTableFormat tableFormat()
{
    QTextTableFormat format;
    format.setBorder(0);
    format.setCellPadding(2);
    format.setCellSpacing(2);
    format.setColumnWidthConstraints({QTextLength(QTextLength::PercentageLength, 30),
                                      QTextLength(QTextLength::PercentageLength, 70)});
    return format;
}
}

CertificateDetails::CertificateDetails(const QString &site, QWidget *owner)
    : QDialog(owner)
    , m_note(new QLabel(this))
    , m_list(new QListWidget(this))
    , m_text(new QTextEdit(this))
{
    setObjectName("dlgCertificate"_L1);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(texts.at<"Caption", "Certificate of %1">().arg(site));
    m_note->setObjectName("lblNote"_L1);
    m_note->setTextFormat(Qt::PlainText);
    m_note->setWordWrap(true);
    m_note->hide();
    m_list->setObjectName("lstChain"_L1);
    m_list->setAccessibleName(
        texts.at<"lstChain", "The server's certificate and those of its issuers">());
    m_text->setObjectName("txtCertificate"_L1);
    m_text->setAccessibleName(texts.at<"txtCertificate", "The certificate">());
    m_text->setReadOnly(true);
    m_text->setTabChangesFocus(true);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    QPushButton *copyAll =
        addCaptioned(*buttons, texts.at<"cmdCopy", "&Copy">, QDialogButtonBox::ActionRole);
    connect(copyAll, &QPushButton::clicked, this, &CertificateDetails::copy);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_list, &QListWidget::currentRowChanged, this, &CertificateDetails::showCertificate);

    auto *column = new QVBoxLayout(this);
    column->addWidget(m_note);
    column->addWidget(m_list);
    column->addWidget(m_text, 1);
    column->addWidget(buttons);
    setChain({});
    resize(560, 460);
}

void CertificateDetails::setNote(const QString &note)
{
    m_note->setText(note);
    m_note->setVisible(!note.isEmpty());
}

void CertificateDetails::setChain(const QList<QSslCertificate> &chain)
{
    m_chain = chain.first(qMin(longestChain, chain.size()));
    m_list->clear();
    for (const QSslCertificate &certificate : std::as_const(m_chain))
        m_list->addItem(CertificateText::subject(certificate));
    const int rows = qBound(1, int(m_chain.size()), mostRows);
    m_list->setFixedHeight(rows * qMax(m_list->sizeHintForRow(0), fontMetrics().height() + 4)
                           + 2 * m_list->frameWidth());
    m_list->setVisible(!m_chain.isEmpty());
    m_text->setVisible(!m_chain.isEmpty());
    m_list->setCurrentRow(0);
}

void CertificateDetails::showCertificate(int row)
{
    m_text->clear();
    if (row < 0 || row >= m_chain.size())
        return;
    const auto lines = CertificateText::lines(m_chain.at(row));
    QTextTable *table = m_text->textCursor().insertTable(int(lines.size()), 2, tableFormat());
    for (int i = 0; i < lines.size(); ++i) {
        write(*table, i, 0, lines.at(i).first, true);
        write(*table, i, 1, inRows(lines.at(i).second), false);
    }
    m_text->moveCursor(QTextCursor::Start);
}

/// What is selected, else all of the certificate.
void CertificateDetails::copy() const
{
    if (m_text->textCursor().hasSelection()) {
        m_text->copy();
        return;
    }
    const int row = m_list->currentRow();
    if (row < 0 || row >= m_chain.size())
        return;
    QString all;
    for (const auto &[caption, value] : CertificateText::lines(m_chain.at(row)))
        all += caption + u' ' + value + u'\n';
    QApplication::clipboard()->setText(all);
}
