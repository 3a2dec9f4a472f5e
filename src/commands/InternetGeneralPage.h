#pragma once

#include <QWidget>

class CookieTree;
class EngineData;
class QCheckBox;
class QLabel;
class QPushButton;
class QSpinBox;
struct EngineOptions;

/// The first page of the internet options: what the engine keeps. Cache, cookies, visited links.
class InternetGeneralPage : public QWidget {
    Q_OBJECT

public:
    explicit InternetGeneralPage(EngineData &engine);

    void fill(const EngineOptions &options);
    void collect(EngineOptions &options) const;

private:
    QWidget *makeCache();
    QWidget *makeCookies();
    QWidget *makeLinks();
    void showCacheSize(qint64 bytes);
    void askToDeleteAll();

    EngineData &m_data;
    QLabel *m_cacheUsed;
    QSpinBox *m_cacheLimit;
    QCheckBox *m_refuseThirdParty;
    CookieTree *m_cookies;
    QPushButton *m_delete;
    QPushButton *m_deleteAll;
    QLabel *m_visitedLinks;
};
