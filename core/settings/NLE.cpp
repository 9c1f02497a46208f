#include "core/settings/NLE.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

QString nleLabel(NLE editor)
{
    switch (editor) {
    case NLE::finalCut:
        return u"Final Cut Pro"_s;
    case NLE::resolve:
        return u"DaVinci Resolve"_s;
    case NLE::premiere:
        return u"Premiere Pro"_s;
    }
    Q_UNREACHABLE();
}

QString nleRawValue(NLE editor)
{
    switch (editor) {
    case NLE::finalCut:
        return u"finalCut"_s;
    case NLE::resolve:
        return u"resolve"_s;
    case NLE::premiere:
        return u"premiere"_s;
    }
    Q_UNREACHABLE();
}

NLE nleFromRawValue(const QString &rawValue)
{
    for (const NLE editor : allNLEs) {
        if (nleRawValue(editor) == rawValue) {
            return editor;
        }
    }
    return NLE::finalCut;
}

} // namespace larkspan
