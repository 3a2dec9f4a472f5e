#pragma once

#include <QFileDialog>
#include <functional>

/// Asks where a page is to be saved and how, and proposes a name made from the page's. A name that
/// is handed back has an ending of its kind.
class SavePageDialog : public QFileDialog {
    Q_OBJECT

public:
    enum class Kind {
        /// With everything it shows in a folder beside it.
        Complete,
        SingleFile,
        SourceOnly,
        /// Not markup: the file as its server sent it.
        AsItCame
    };

    /// Gets a whole path; what is there under that name may be replaced. It may be called when the
    /// dialog is gone, and is not when the user thinks better of it.
    using Chosen = std::function<void(const QString &file, Kind kind)>;

    /// For a page of markup with that title.
    static SavePageDialog *forMarkup(QWidget *owner, const QString &title, const Chosen &chosen);
    /// For what came as a file of that name and type (as "text/plain").
    static SavePageDialog *forFile(QWidget *owner, const QString &name, const QString &type,
                                   const Chosen &chosen);

    void accept() override;

private:
    SavePageDialog(QWidget *owner, const Chosen &chosen);
    Kind kind() const;
    QString completed(const QString &file) const;
    void followKind();
    void take(const QString &file);

    Chosen m_chosen;
    bool m_isMarkup = false;
    /// For what is not markup; with its dot, or empty.
    QString m_ending;
};
