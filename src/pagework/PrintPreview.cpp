#include "PrintPreview.h"

#include "Forms.h"
#include "PageJobs.h"
#include "PagePrinter.h"
#include "PageSetup.h"
#include "PlainCaption.h"
#include "ProgramIcon.h"
#include "ScreenFit.h"
#include "Texts.h"

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QPdfDocument>
#include <QPdfPageNavigator>
#include <QPdfView>
#include <QSpinBox>
#include <QStatusBar>
#include <QToolBar>
#include <QWebEnginePage>

using namespace Qt::StringLiterals;

namespace {
constexpr int fitPage = 0;
constexpr int fitWidth = -1;

constexpr Texts<"frmPrintPreview"> texts;
}

PrintPreview::PrintPreview(QWebEnginePage *page)
    : m_page(page)
    , m_document(new QPdfDocument(this))
    , m_view(new QPdfView(this))
    , m_tools(new QToolBar(this))
{
    setObjectName("frmPrintPreview"_L1);
    setAttribute(Qt::WA_DeleteOnClose);
    Forms::add(this);
    setWindowIcon(programIcon());
    new PlainCaption(*this);
    setWindowTitle(texts.at<"Caption", "Print Preview">() + u" - "_s + page->title().left(200));
    m_view->setDocument(m_document);
    m_view->setPageMode(QPdfView::PageMode::MultiPage);
    m_view->setAccessibleName(texts.at<"strSheets", "Sheets">());
    setCentralWidget(m_view);
    m_tools->setMovable(false);
    m_tools->setToolButtonStyle(Qt::ToolButtonTextOnly);
    addToolBar(m_tools);
    setContextMenuPolicy(Qt::NoContextMenu);
    addTools();
    resizeToScreen(*this, QSize(900, 700));
    renew();
}

PrintPreview::~PrintPreview()
{
    m_view->setDocument(nullptr);
    delete m_document;
}

QAction *PrintPreview::addTool(const Text &caption, const QKeySequence &shortcut)
{
    QAction *action = m_tools->addAction(caption());
    action->setObjectName(caption.name());
    action->setShortcut(shortcut);
    return action;
}

void PrintPreview::addTools()
{
    QAction *print = addTool(texts.at<"cmdPrint", "&Print...">, QKeySequence::Print);
    QAction *setUp = addTool(texts.at<"cmdPageSetup", "Page &Setup...">);
    connect(print, &QAction::triggered, this, [this] {
        if (m_page)
            PagePrinter::open(m_page, this);
    });
    connect(setUp, &QAction::triggered, this,
            [this] { PageSetup::open(this, [this] { renew(); }); });
    connect(m_page, &QObject::destroyed, this, [print, setUp] {
        print->setEnabled(false);
        setUp->setEnabled(false);
    });
    m_tools->addSeparator();
    addPaging();
    m_tools->addSeparator();
    addZoom();
    m_tools->addSeparator();
    connect(addTool(texts.at<"cmdClose", "&Close">, Qt::Key_Escape), &QAction::triggered, this,
            &QWidget::close);
}

void PrintPreview::addPaging()
{
    m_previous =
        addTool(texts.at<"cmdPrevious", "P&revious">, QKeySequence(Qt::CTRL | Qt::Key_PageUp));
    m_sheet = new QSpinBox(m_tools);
    m_sheet->setObjectName("txtSheet"_L1);
    m_sheet->setAccessibleName(texts.at<"strSheet", "Sheet">());
    m_sheet->setKeyboardTracking(false);
    m_tools->addWidget(m_sheet);
    m_sheets = new QLabel(m_tools);
    m_sheets->setObjectName("lblSheets"_L1);
    m_tools->addWidget(m_sheets);
    m_next = addTool(texts.at<"cmdNext", "&Next">, QKeySequence(Qt::CTRL | Qt::Key_PageDown));
    connect(m_previous, &QAction::triggered, this, [this] { goTo(m_sheet->value() - 1); });
    connect(m_next, &QAction::triggered, this, [this] { goTo(m_sheet->value() + 1); });
    connect(m_sheet, &QSpinBox::valueChanged, this, &PrintPreview::goTo);
    connect(m_view->pageNavigator(), &QPdfPageNavigator::currentPageChanged, this,
            &PrintPreview::showSheetNumber);
}

void PrintPreview::addZoom()
{
    m_zoom = new QComboBox(m_tools);
    m_zoom->setObjectName("cboZoom"_L1);
    m_zoom->setAccessibleName(texts.at<"strZoom", "Zoom">());
    m_zoom->addItem(texts.at<"strFitPage", "Whole page">(), fitPage);
    m_zoom->addItem(texts.at<"strFitWidth", "Page width">(), fitWidth);
    for (const int percent : {25, 50, 75, 100, 150, 200, 400})
        m_zoom->addItem(QString::number(percent) + u'%', percent);
    m_tools->addWidget(m_zoom);
    connect(m_zoom, &QComboBox::currentIndexChanged, this, &PrintPreview::applyZoom);
    applyZoom();
}

void PrintPreview::applyZoom()
{
    const int percent = m_zoom->currentData().toInt();
    if (percent == fitPage) {
        m_view->setZoomMode(QPdfView::ZoomMode::FitInView);
    } else if (percent == fitWidth) {
        m_view->setZoomMode(QPdfView::ZoomMode::FitToWidth);
    } else {
        m_view->setZoomMode(QPdfView::ZoomMode::Custom);
        m_view->setZoomFactor(percent / 100.0);
    }
}

void PrintPreview::renew()
{
    if (!m_page)
        return;
    statusBar()->showMessage(texts.at<"strMaking", "Making the sheets...">());
    PageJobs::toPdf(m_page, PageSetup::layout(), {}, this,
                    [this](const QByteArray &pdf) { setSheets(pdf); });
}

void PrintPreview::setSheets(const QByteArray &pdf)
{
    m_document->close();
    m_buffer.close();
    m_pdf = pdf;
    if (pdf.isEmpty()) {
        statusBar()->showMessage(texts.at<"strFailed", "The page cannot be shown.">());
    } else {
        m_buffer.setBuffer(&m_pdf);
        m_buffer.open(QIODevice::ReadOnly);
        m_document->load(&m_buffer);
        statusBar()->clearMessage();
    }
    showSheetNumber();
    emit renewed();
}

void PrintPreview::goTo(int sheet)
{
    if (sheet >= 1 && sheet <= m_document->pageCount())
        m_view->pageNavigator()->jump(sheet - 1, {}, 0);
}

void PrintPreview::showSheetNumber()
{
    const int sheets = qMax(0, m_document->pageCount());
    const int sheet = qMin(m_view->pageNavigator()->currentPage() + 1, sheets);
    const QSignalBlocker quiet(m_sheet);
    m_sheet->setRange(qMin(1, sheets), sheets);
    m_sheet->setValue(sheet);
    m_sheets->setText(texts.at<"strOf", "of %1">().arg(sheets));
    m_previous->setEnabled(sheet > 1);
    m_next->setEnabled(sheet < sheets);
}
