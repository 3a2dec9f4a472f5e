#include "InternetSpellingPage.h"

#include <QCheckBox>
#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>

#include "Captioned.h"
#include "Dictionaries.h"
#include "EngineOptions.h"
#include "TickDelegate.h"

using namespace Qt::StringLiterals;

namespace {
constexpr Texts<"frmInternetOptions"> texts;

constexpr int tagRole = Qt::UserRole;

QStringList tagsIn(const QString &list)
{
    QStringList tags;
    for (const QString &each : list.split(u',', Qt::SkipEmptyParts))
        tags.append(each.trimmed());
    return tags;
}
}

InternetSpellingPage::InternetSpellingPage()
    : m_check(captioned<QCheckBox>(
        texts.at<"chkSpelling", "Check the spelling of what is typed into pages">))
    , m_list(new QListWidget)
    , m_none(new QLabel(texts.at<"strNoDictionary",
                                 "No dictionary is installed. The system's packages for Hunspell "
                                 "bring them.">()))
{
    m_list->setObjectName("lstDictionaries"_L1);
    m_list->setItemDelegate(new TickDelegate(m_list));
    m_list->setAccessibleName(texts.at<"lstDictionaries", "Dictionaries">());
    m_none->setObjectName("lblNoDictionary"_L1);
    m_none->setWordWrap(true);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_check);
    layout->addWidget(m_list, 1);
    layout->addWidget(m_none);
    layout->addStretch();
    connect(m_check, &QCheckBox::toggled, m_list, &QWidget::setEnabled);
}

void InternetSpellingPage::fill(const EngineOptions &options)
{
    const QStringList all = Dictionaries::all();
    m_ofDesktop = Dictionaries::ofDesktop(all);
    const QStringList wanted =
        options.dictionaries.isEmpty() ? m_ofDesktop : tagsIn(options.dictionaries);
    m_missing.clear();
    for (const QString &tag : wanted) {
        if (!all.contains(tag))
            m_missing.append(tag);
    }
    m_list->clear();
    for (const QString &tag : all)
        addDictionary(tag, wanted.contains(tag));
    m_list->setVisible(!all.isEmpty());
    m_none->setVisible(all.isEmpty());
    m_check->setEnabled(!all.isEmpty());
    m_check->setChecked(options.spelling);
    m_list->setEnabled(options.spelling);
}

void InternetSpellingPage::addDictionary(const QString &tag, bool isChosen)
{
    auto *item = new QListWidgetItem(Dictionaries::nameOf(tag), m_list);
    item->setData(tagRole, tag);
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
    item->setCheckState(isChosen ? Qt::Checked : Qt::Unchecked);
}

QStringList InternetSpellingPage::chosen() const
{
    QStringList tags = m_missing;
    for (int i = 0; i < m_list->count(); ++i) {
        if (m_list->item(i)->checkState() == Qt::Checked)
            tags.append(m_list->item(i)->data(tagRole).toString());
    }
    return tags;
}

/// No tick at all means that nothing is to be checked, as no names stand for the desktop's.
void InternetSpellingPage::collect(EngineOptions &options) const
{
    QStringList tags = chosen();
    options.spelling = m_check->isChecked() && (!tags.isEmpty() || m_ofDesktop.isEmpty());
    QStringList usual = m_ofDesktop;
    tags.sort();
    usual.sort();
    options.dictionaries = tags == usual ? QString() : tags.join(u',');
}
