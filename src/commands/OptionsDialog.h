#pragma once

#include "Settings.h"

#include <QDialog>

class Frame;
class QCheckBox;
class QComboBox;
class QLineEdit;
class StartUpFrame;

/// The options dialog: home page, five switches and the language. Nothing is written before Apply
/// or Save; what Apply has written stays when the dialog is cancelled.
class OptionsDialog : public QDialog {
    Q_OBJECT

public:
    /// Loads the dialog for the current page and shows it over the frame; brings it to the front
    /// when it is open already.
    static void showOver(Frame &frame, StartUpFrame &program);

    /// `program` is put into the chosen language by the start-up routine.
    OptionsDialog(Frame &frame, StartUpFrame &program);

    /// Translates the dialog and fills it from the settings. It ends at the first switch whose
    /// stored text is no number: what follows stays as designed, the list of languages empty.
    void load();

    /// What "Current Page" puts into the home page box; empty: the home page that is stored.
    QString currentPage() const { return m_currentPage; }
    void setCurrentPage(const QString &address) { m_currentPage = address; }

private:
    QWidget *makeHomePage();
    QWidget *makeSwitches(const char *groupName);
    QWidget *makeLanguage();
    QWidget *makeButtons();

    QCheckBox *boxOf(const Settings::Switch &setting) const;
    void applyCaptions();
    bool fillSwitches();
    void fillLanguages();
    void setHomeAddress(int index);
    QList<IniEntry> entries() const;
    bool applySettings();

    Frame &m_frame;
    StartUpFrame &m_program;
    QString m_currentPage;
    QLineEdit *m_homePage;
    QComboBox *m_languages;
};
