#pragma once

#include <QString>
#include <QTreeWidgetItem>

/// A node of the favorites tree: a folder or an Internet shortcut file.
class FavoriteNode : public QTreeWidgetItem {
public:
    enum class Kind { Folder, Link };

    FavoriteNode(Kind kind, const QString &key, const QString &text);

    Kind kind() const { return m_kind; }
    /// The full path; a folder's ends in a slash.
    const QString &key() const { return m_key; }
    /// The address of a shortcut; empty for folders and for shortcuts without one.
    const QString &tag() const { return m_tag; }
    void setTag(const QString &url) { m_tag = url; }

    QVariant data(int column, int role) const override;

private:
    QString toolTipText() const;
    QIcon picture() const;

    Kind m_kind;
    QString m_key;
    QString m_text;
    QString m_tag;
};
