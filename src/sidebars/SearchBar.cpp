#include "SearchBar.h"
#include "AppFolder.h"
#include "KeyCodes.h"
#include "Language.h"
#include "LinkLabel.h"
#include "MsgBox.h"
#include "SearchEngines.h"
#include "SideBarControls.h"
#include "brwURL.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QToolButton>
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

QString translated(const QString &key, const QString &text)
{
    return GetLanguageText(u"SearchBox"_s, key, text);
}

// A caption as it is read out: without the marks of its access key.
QString withoutMarks(QString caption)
{
    return caption.remove(u'&');
}

template <typename Control> void translate(Control &control)
{
    control.setText(translated(control.objectName(), control.text()));
}

template <typename Control> Control *named(Control *control, const char *name)
{
    control->setObjectName(QLatin1StringView(name));
    return control;
}
}

SearchBar::SearchBar(QWidget *parent)
    : QWidget(parent)
    , m_lblSearchEngine(named(new QLabel(u"Search Engine:"_s), "lblSearchEngine"))
    , m_cboSearchEngine(named(new QComboBox, "cboSearchEngine"))
    , m_lblSearchQuery(named(new QLabel(u"Search Query:"_s), "lblSearchQuery"))
    , m_brwSearch(named(new brwURL, "brwSearch"))
    , m_lblClearSearches(named(new LinkLabel(u"Clear Searches"_s), "lblClearSearches"))
    , m_cmdSearch(named(new QPushButton(u"&Search"_s), "cmdSearch"))
    , m_chkNewWindow(named(new QCheckBox(u"Open In New Window"_s), "chkNewWindow"))
    , m_cmdExit(makeCloseButton(this))
    , m_strEngineDataNotFound(u"Error: Engine data not found!"_s)
    , m_strNoSearchEngineSelected(u"Error: No Search Engine Selected!"_s)
    , m_strYouMustEnterSearchCriteria(u"Error: You must enter a search criteria!"_s)
{
    // Shown by its command only, whatever shows the window it is in.
    hide();
    m_cmdExit->setText(u"X"_s);
    nameControls();
    m_brwSearch->setLineBreakText(u" "_s);
    m_lblSearchEngine->setBuddy(m_cboSearchEngine);
    m_lblSearchQuery->setBuddy(m_brwSearch);
    makeLayout();
    setTabOrder(m_cboSearchEngine, m_brwSearch);
    setTabOrder(m_brwSearch, m_chkNewWindow);
    setTabOrder(m_chkNewWindow, m_lblClearSearches);
    setTabOrder(m_lblClearSearches, m_cmdSearch);
    setTabOrder(m_cmdSearch, m_cmdExit);
    connect(m_cmdSearch, &QPushButton::clicked, this, &SearchBar::cmdSearch_Click);
    connect(m_cmdExit, &QToolButton::clicked, this, &SearchBar::ExitSearch);
    connect(m_lblClearSearches, &LinkLabel::clicked, m_brwSearch, &brwURL::ClearList);
    connect(m_brwSearch, &brwURL::KeyPress, this, [this](int &keyAscii) {
        if (keyAscii != KeyCodes::Enter)
            return;
        keyAscii = 0;
        cmdSearch_Click();
    });
}

SearchBar::~SearchBar()
{
    // Never shown, its list was never loaded, and saving it would lose the one in the file.
    if (m_Initialised)
        m_brwSearch->SaveList(historySection(), m_IniFile, historyLength).leaveToLog();
}

void SearchBar::makeLayout()
{
    // A long engine name must not make the bar wide.
    m_cboSearchEngine->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_cboSearchEngine->setMinimumContentsLength(shortestName);

    auto *bottom = new QHBoxLayout;
    bottom->addWidget(m_lblClearSearches);
    bottom->addStretch(1);
    bottom->addWidget(m_cmdSearch);
    auto *content = new QWidget;
    content->setMaximumWidth(widestContent);
    auto *rows = new QVBoxLayout(content);
    const int side = rows->contentsMargins().left();
    rows->setContentsMargins(side, 0, side, side);
    rows->addWidget(m_cboSearchEngine);
    rows->addSpacing(rows->spacing());
    rows->addWidget(m_lblSearchQuery);
    rows->addWidget(m_brwSearch);
    rows->addWidget(m_chkNewWindow);
    rows->addLayout(bottom);

    // The close button stands in the corner, where the other side bar has its own.
    m_cmdExit->setFixedSize(closeButtonSize, closeButtonSize);
    auto *top = new QHBoxLayout;
    top->setContentsMargins(side, 0, 0, 0);
    top->addWidget(m_lblSearchEngine, 1);
    top->addWidget(m_cmdExit);
    auto *whole = new QVBoxLayout(this);
    whole->setContentsMargins({});
    whole->addLayout(top);
    whole->addWidget(content);
    whole->addStretch(1);
}

void SearchBar::LoadLang()
{
    m_strEngineDataNotFound = translated(u"strEngineDataNotFound"_s, m_strEngineDataNotFound);
    m_strNoSearchEngineSelected =
        translated(u"strNoSearchEngineSelected"_s, m_strNoSearchEngineSelected);
    m_strYouMustEnterSearchCriteria =
        translated(u"strYouMustEnterSearchCriteria"_s, m_strYouMustEnterSearchCriteria);
    translate(*m_lblSearchEngine);
    translate(*m_lblSearchQuery);
    translate(*m_lblClearSearches);
    translate(*m_cmdSearch);
    translate(*m_chkNewWindow);
    translate(*m_cmdExit);
    nameControls();
}

// Controls without a caption go by that of their label.
void SearchBar::nameControls()
{
    m_cmdExit->setAccessibleName(withoutMarks(m_cmdExit->text()));
    m_cboSearchEngine->setAccessibleName(withoutMarks(m_lblSearchEngine->text()));
    m_brwSearch->setFieldName(withoutMarks(m_lblSearchQuery->text()));
}

void SearchBar::SetFocus()
{
    m_brwSearch->setFocus();
}

QSize SearchBar::sizeHint() const
{
    return usualSize.expandedTo(minimumSizeHint());
}

void SearchBar::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (m_Initialised)
        return;
    m_Initialised = true;
    m_IniFile = AppFolder::appData(u"SearchEngines.ini"_s);
    loadFile();
}

void SearchBar::loadFile()
{
    m_cboSearchEngine->addItems(SearchEngines::names(m_IniFile));
    // By itself the list would have its first entry selected.
    m_cboSearchEngine->setCurrentIndex(
        SearchEngines::preselected(m_IniFile, m_cboSearchEngine->count()));
    m_brwSearch->LoadList(historySection(), m_IniFile, historyLength, false);
}

void SearchBar::cmdSearch_Click()
{
    const QString query = m_brwSearch->Text();
    if (query.isEmpty()) {
        refuse(m_strYouMustEnterSearchCriteria);
        return;
    }
    m_brwSearch->AddItem(query, true);
    const QString engine = m_cboSearchEngine->currentText();
    if (engine.isEmpty()) {
        refuse(m_strNoSearchEngineSelected);
        return;
    }
    const QString address = SearchEngines::addressTemplate(m_IniFile, engine);
    if (address.isEmpty()) {
        refuse(m_strEngineDataNotFound);
        return;
    }
    // Opening a window lets events run, and the program may be closed by one of them.
    const QPointer<SearchBar> self(this);
    emit Search(m_chkNewWindow->isChecked() ? 1 : 0, SearchEngines::searchAddress(address, query));
    if (self)
        SearchEngines::keepSelection(m_IniFile, m_cboSearchEngine->currentIndex());
}

void SearchBar::refuse(const QString &message)
{
    MsgBox::inform(window(), message);
    SetFocus();
}
