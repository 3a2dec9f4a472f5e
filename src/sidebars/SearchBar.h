#pragma once

#include <QString>
#include <QWidget>

class LinkLabel;
class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
class QToolButton;
class AddressBox;

/// The side bar that turns a query into the address of a search engine's answer.
class SearchBar : public QWidget {
    Q_OBJECT

public:
    explicit SearchBar(QWidget *parent = nullptr);
    /// Keeps the last ten queries, if the bar was ever shown.
    ~SearchBar() override;

    /// Puts captions and messages into the current language; what it lacks stays as it is.
    void loadLanguage();
    struct Engine {
        /// Empty where none is chosen.
        QString name;
        QString addressTemplate;
    };
    /// Also of a bar that was never shown.
    Engine chosenEngine() const;
    /// Where the chosen engine answers `query`, which is escaped here, as one of the bar is not:
    /// that may be made for the engine's own signs. Empty without an engine.
    QString answerTo(const QString &query) const;
    /// Puts the keyboard focus into the query box.
    void setFocus();

    QSize sizeHint() const override;

signals:
    /// The close button was pressed.
    void exitRequested();
    /// Open `url`; in a new window when `newWindow` is 1, else (0) in the active one.
    void searchRequested(int newWindow, const QString &url);

protected:
    void showEvent(QShowEvent *event) override;

private:
    void makeLayout();
    void nameControls();
    void loadFile();
    void startSearch();
    void refuse(const QString &message);

    QLabel *m_engineLabel;
    QComboBox *m_engine;
    QLabel *m_queryLabel;
    AddressBox *m_query;
    LinkLabel *m_clear;
    QPushButton *m_search;
    QCheckBox *m_newWindow;
    QToolButton *m_exit;

    QString m_iniFile;
    bool m_initialised = false;
    QString m_engineDataNotFound;
    QString m_noEngineSelected;
    QString m_criteriaMissing;
};
