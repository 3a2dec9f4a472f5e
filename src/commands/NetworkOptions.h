#pragma once

#include <QGroupBox>

struct EngineOptions;
class QComboBox;
class QGridLayout;
class QLineEdit;
class QSpinBox;
class Text;

/// How pages are reached: the proxy, what servers are told, and where downloads go.
class NetworkOptions : public QGroupBox {
    Q_OBJECT

public:
    NetworkOptions();

    void fill(const EngineOptions &options);
    /// False, with a message and the focus on the control, when a text cannot be used.
    bool check();
    void collect(EngineOptions &options) const;

private:
    void addProxy();
    void addTexts();
    QLineEdit *addText(int row, const Text &caption);
    void enableProxyAddress();
    bool refuse(QWidget &control, const QString &message);
    void browse();

    QGridLayout *m_layout;
    QComboBox *m_proxy;
    QLineEdit *m_proxyHost;
    QSpinBox *m_proxyPort;
    QLineEdit *m_languages;
    QLineEdit *m_userAgent;
    QLineEdit *m_downloads;
    QString m_filledFolder;
};
