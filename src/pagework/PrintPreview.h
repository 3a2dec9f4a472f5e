#pragma once

#include <QBuffer>
#include <QMainWindow>
#include <QPointer>

class QComboBox;
class QLabel;
class QPdfDocument;
class QPdfView;
class QSpinBox;
class QToolBar;
class QWebEnginePage;
class Text;

/// Shows a page as it will be printed, sheet by sheet. It deletes itself when closed.
class PrintPreview : public QMainWindow {
    Q_OBJECT

public:
    explicit PrintPreview(QWebEnginePage *page);
    ~PrintPreview() override;

    /// Makes the sheets anew, with the page set-up of now.
    void renew();
    QPdfDocument &document() const { return *m_document; }

signals:
    void renewed();

private:
    void addTools();
    void addPaging();
    QAction *addTool(const Text &caption, const QKeySequence &shortcut = {});
    void addZoom();
    void setSheets(const QByteArray &pdf);
    void goTo(int sheet);
    void showSheetNumber();
    void applyZoom();

    QPointer<QWebEnginePage> m_page;
    QByteArray m_pdf;
    QBuffer m_buffer;
    QPdfDocument *m_document;
    QPdfView *m_view;
    QToolBar *m_tools;
    QSpinBox *m_sheet = nullptr;
    QLabel *m_sheets = nullptr;
    QComboBox *m_zoom = nullptr;
    QAction *m_previous = nullptr;
    QAction *m_next = nullptr;
};
