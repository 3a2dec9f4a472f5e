#include "SearchBar.h"
#include "AddressBox.h"
#include "AppFolder.h"
#include "Captioned.h"
#include "KeyCodes.h"
#include "LinkLabel.h"
#include "MsgBox.h"
#include "SearchEngines.h"
#include "SideBarControls.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>
#include <QUrl>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {
constexpr int historyLength = 10;
constexpr int shortestName = 8;
constexpr int widestContent = 420;
constexpr int closeButtonSize = 24;
constexpr QSize usualSize(240, 400);

QString historySection()
{
    return u"RecentSearches"_s;
}

constexpr Texts<"SearchBox"> texts;

// A caption as it is read out: without the marks of its access key.
QString withoutMarks(QString caption)
{
    return caption.remove(u'&');
}

const Text &engineDataNotFound = texts.at<"strEngineDataNotFound", "Error: Engine data not found!">;
const Text &noEngineSelected =
    texts.at<"strNoSearchEngineSelected", "Error: No Search Engine Selected!">;
const Text &criteriaMissing =
    texts.at<"strYouMustEnterSearchCriteria", "Error: You must enter a search criteria!">;

QString engineFile()
{
    return AppFolder::appData(u"SearchEngines.ini"_s);
}

template <typename Control> void translate(Control &control)
{
    control.setText(texts.named(control.objectName(), control.text()));
}

template <typename Control> Control *named(Control *control, const char *name)
{
    control->setObjectName(QLatin1StringView(name));
    return control;
}
}

SearchBar::SearchBar(QWidget *parent)
    : QWidget(parent)
    , m_engineLabel(captionedInEnglish<QLabel>(texts.at<"lblSearchEngine", "Search Engine:">))
    , m_engine(named(new QComboBox, "cboSearchEngine"))
    , m_queryLabel(captionedInEnglish<QLabel>(texts.at<"lblSearchQuery", "Search Query:">))
    , m_query(named(new AddressBox, "brwSearch"))
    , m_clear(captionedInEnglish<LinkLabel>(texts.at<"lblClearSearches", "Clear Searches">))
    , m_search(captionedInEnglish<QPushButton>(texts.at<"cmdSearch", "&Search">))
    , m_newWindow(captionedInEnglish<QCheckBox>(texts.at<"chkNewWindow", "Open In New Window">))
    , m_exit(makeCloseButton(this))
    , m_engineDataNotFound(engineDataNotFound.inEnglish())
    , m_noEngineSelected(noEngineSelected.inEnglish())
    , m_criteriaMissing(criteriaMissing.inEnglish())
{
    // Shown by its command only, whatever shows the window it is in.
    hide();
    m_exit->setText(texts.at<"cmdExit", "X">.inEnglish());
    nameControls();
    m_query->setLineBreakText(u" "_s);
    m_engineLabel->setBuddy(m_engine);
    m_queryLabel->setBuddy(m_query);
    makeLayout();
    setTabOrder(m_engine, m_query);
    setTabOrder(m_query, m_newWindow);
    setTabOrder(m_newWindow, m_clear);
    setTabOrder(m_clear, m_search);
    setTabOrder(m_search, m_exit);
    connect(m_search, &QPushButton::clicked, this, &SearchBar::startSearch);
    connect(m_exit, &QToolButton::clicked, this, &SearchBar::exitRequested);
    connect(m_clear, &LinkLabel::clicked, m_query, &AddressBox::clearList);
    connect(m_query, &AddressBox::keyPress, this, [this](int &keyAscii) {
        if (keyAscii != KeyCodes::Enter)
            return;
        keyAscii = 0;
        startSearch();
    });
}

SearchBar::~SearchBar()
{
    // Never shown, its list was never loaded, and saving it would lose the one in the file.
    if (m_initialised)
        m_query->saveListTo(historySection(), m_iniFile, historyLength).leaveToLog();
}

void SearchBar::makeLayout()
{
    // A long engine name must not make the bar wide.
    m_engine->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_engine->setMinimumContentsLength(shortestName);

    auto *bottom = new QHBoxLayout;
    bottom->addWidget(m_clear);
    bottom->addStretch(1);
    bottom->addWidget(m_search);
    auto *content = new QWidget;
    content->setMaximumWidth(widestContent);
    auto *rows = new QVBoxLayout(content);
    const int side = rows->contentsMargins().left();
    rows->setContentsMargins(side, 0, side, side);
    rows->addWidget(m_engine);
    rows->addSpacing(rows->spacing());
    rows->addWidget(m_queryLabel);
    rows->addWidget(m_query);
    rows->addWidget(m_newWindow);
    rows->addLayout(bottom);

    // The close button stands in the corner, where the other side bar has its own.
    m_exit->setFixedSize(closeButtonSize, closeButtonSize);
    auto *top = new QHBoxLayout;
    top->setContentsMargins(side, 0, 0, 0);
    top->addWidget(m_engineLabel, 1);
    top->addWidget(m_exit);
    auto *whole = new QVBoxLayout(this);
    whole->setContentsMargins({});
    whole->addLayout(top);
    whole->addWidget(content);
    whole->addStretch(1);
}

void SearchBar::loadLanguage()
{
    m_engineDataNotFound = engineDataNotFound(m_engineDataNotFound);
    m_noEngineSelected = noEngineSelected(m_noEngineSelected);
    m_criteriaMissing = criteriaMissing(m_criteriaMissing);
    translate(*m_engineLabel);
    translate(*m_queryLabel);
    translate(*m_clear);
    translate(*m_search);
    translate(*m_newWindow);
    translate(*m_exit);
    nameControls();
}

// Controls without a caption go by that of their label.
void SearchBar::nameControls()
{
    m_exit->setAccessibleName(withoutMarks(m_exit->text()));
    m_engine->setAccessibleName(withoutMarks(m_engineLabel->text()));
    m_query->setFieldName(withoutMarks(m_queryLabel->text()));
}

void SearchBar::setFocus()
{
    m_query->setFocus();
}

QSize SearchBar::sizeHint() const
{
    return usualSize.expandedTo(minimumSizeHint());
}

void SearchBar::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (m_initialised)
        return;
    m_initialised = true;
    m_iniFile = engineFile();
    loadFile();
}

void SearchBar::loadFile()
{
    m_engine->addItems(SearchEngines::names(m_iniFile));
    // By itself the list would have its first entry selected.
    m_engine->setCurrentIndex(SearchEngines::preselected(m_iniFile, m_engine->count()));
    m_query->loadList(historySection(), m_iniFile, historyLength, false);
}

SearchBar::Engine SearchBar::chosenEngine() const
{
    const QString file = engineFile();
    Engine engine;
    if (m_initialised) {
        engine.name = m_engine->currentText();
    } else {
        const QStringList names = SearchEngines::names(file);
        engine.name = names.value(SearchEngines::preselected(file, int(names.size())));
    }
    if (!engine.name.isEmpty())
        engine.addressTemplate = SearchEngines::addressTemplate(file, engine.name);
    return engine;
}

QString SearchBar::answerTo(const QString &query) const
{
    return SearchEngines::searchAddress(chosenEngine().addressTemplate,
                                        QString::fromLatin1(QUrl::toPercentEncoding(query)));
}

void SearchBar::startSearch()
{
    const QString query = m_query->text();
    if (query.isEmpty()) {
        refuse(m_criteriaMissing);
        return;
    }
    m_query->addItem(query, true);
    const QString engine = m_engine->currentText();
    if (engine.isEmpty()) {
        refuse(m_noEngineSelected);
        return;
    }
    const QString address = SearchEngines::addressTemplate(m_iniFile, engine);
    if (address.isEmpty()) {
        refuse(m_engineDataNotFound);
        return;
    }
    emit searchRequested(m_newWindow->isChecked() ? 1 : 0,
                         SearchEngines::searchAddress(address, query));
    SearchEngines::keepSelection(m_iniFile, m_engine->currentIndex());
}

void SearchBar::refuse(const QString &message)
{
    MsgBox::inform(window(), message);
    setFocus();
}
