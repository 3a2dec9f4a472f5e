#include "FavoriteNode.h"
#include "ThemedIcon.h"
#include "ToolTipText.h"

using namespace Qt::StringLiterals;

FavoriteNode::FavoriteNode(Kind kind, const QString &key, const QString &text)
    : m_kind(kind)
    , m_key(key)
    , m_text(text)
{
}

// Pictures and tool tips are made when they are asked for: most nodes are never in view.
QVariant FavoriteNode::data(int column, int role) const
{
    switch (role) {
    case Qt::DisplayRole:
        return m_text;
    case Qt::DecorationRole:
        return picture();
    case Qt::ToolTipRole:
        return toolTipText();
    case Qt::AccessibleDescriptionRole:
        return m_tag;
    default:
        return QTreeWidgetItem::data(column, role);
    }
}

QString FavoriteNode::toolTipText() const
{
    return m_tag.isEmpty() ? QString() : wrappedToolTip(m_tag);
}

// The open folder stands for the selected one, as the closed one for all others.
QIcon FavoriteNode::picture() const
{
    static const QIcon closedFolder = themedIcon(u"folder-closed"_s);
    static const QIcon openFolder = themedIcon(u"folder-open"_s);
    static const QIcon link = themedIcon(u"link"_s);
    if (m_kind == Kind::Link)
        return link;
    return isSelected() ? openFolder : closedFolder;
}
