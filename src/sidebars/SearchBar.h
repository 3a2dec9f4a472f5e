#pragma once

#include <QString>
#include <QWidget>

class LinkLabel;
class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
class QToolButton;
class brwURL;

/// The side bar that turns a query into the address of a search engine's answer.
class SearchBar : public QWidget {
    Q_OBJECT

public:
    explicit SearchBar(QWidget *parent = nullptr);
    /// Keeps the last ten queries, if the bar was ever shown.
    ~SearchBar() override;

    /// Puts captions and messages into the current language; what it lacks stays as it is.
    void LoadLang();
    /// Puts the keyboard focus into the query box.
    void SetFocus();

    QSize sizeHint() const override;

signals:
    /// The close button was pressed.
    void ExitSearch();
    /// Open `URL`; in a new window when `NewWindow` is 1, else (0) in the active one.
    void Search(int NewWindow, const QString &URL);

protected:
    void showEvent(QShowEvent *event) override;

private:
    void makeLayout();
    void nameControls();
    void loadFile();
    void cmdSearch_Click();
    void refuse(const QString &message);

    QLabel *m_lblSearchEngine;
    QComboBox *m_cboSearchEngine;
    QLabel *m_lblSearchQuery;
    brwURL *m_brwSearch;
    LinkLabel *m_lblClearSearches;
    QPushButton *m_cmdSearch;
    QCheckBox *m_chkNewWindow;
    QToolButton *m_cmdExit;

    QString m_IniFile;
    bool m_Initialised = false;
    QString m_strEngineDataNotFound;
    QString m_strNoSearchEngineSelected;
    QString m_strYouMustEnterSearchCriteria;
};
