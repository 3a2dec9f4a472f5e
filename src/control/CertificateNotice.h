#pragma once

#include "CertificateFailure.h"

#include <QWidget>

class QPushButton;
class QVBoxLayout;

/// Stands where a page would be whose server could not prove who it is: why, what could be behind
/// it, and the ways from here. Escape and Return go back.
class CertificateNotice : public QWidget {
    Q_OBJECT

public:
    CertificateNotice(const CertificateFailure &failure, QWidget *parent);

signals:
    void backPressed();
    /// The user goes on all the same, until the program ends.
    void goOnPressed(const CertificateFailure &failure);

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void addTexts(QVBoxLayout &column);
    void addButtons(QVBoxLayout &column);
    void takeTime(QPushButton &goOn);
    void openDetails();

    CertificateFailure m_failure;
};
