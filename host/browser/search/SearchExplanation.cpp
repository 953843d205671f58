#include "host/browser/search/SearchExplanation.h"

#include "host/installation/SearchText.h"
#include "host/support/QtText.h"

#include <QCoreApplication>
#include <QStringList>

namespace VelkHost {
namespace {

/// Gives the texts their context for translators.
struct SearchExplanation
{
    Q_DECLARE_TR_FUNCTIONS(SearchExplanation)
};

}  // namespace

QString explanationOf(const Library::Search::Info& info)
{
    const std::vector<Library::Search::ORGroup>& groups = info.parseTree.groups;
    if (groups.empty())
        return SearchExplanation::tr("Nothing to search for: there is no term that an entry must have.");
    QStringList lines;
    lines << (groups.size() == 1
                  ? SearchExplanation::tr("An entry is found when it matches this:")
                  : SearchExplanation::tr("An entry is found when it matches one of these %Ln alternatives:", nullptr,
                                          static_cast<int>(groups.size())));
    const QString indentation(4, u' ');
    int number = 0;
    for (const Library::Search::ORGroup& group : groups) {
        lines << SearchExplanation::tr("%1. all of: %2").arg(++number).arg(qtText(quotedTerms(group.terms)));
        if (!group.excludedTerms.empty())
            lines << indentation + SearchExplanation::tr("none of: %1").arg(qtText(quotedTerms(group.excludedTerms)));
    }
    return lines.join(u'\n');
}

}  // namespace VelkHost
