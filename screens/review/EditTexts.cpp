#include "screens/review/EditTexts.h"

#include "screens/engine/Wording.h"

namespace larkspan {

namespace {

QString nameOf(const EditHistory::Edit &edit)
{
    switch (edit.kind) {
    case EditHistory::Kind::move:
        return Wording::of(EditTexts::tr("Move to %1"), {edit.bin});
    case EditHistory::Kind::tag:
        return Wording::of(EditTexts::tr("Also Tag %1"), {edit.bin});
    case EditHistory::Kind::untag:
        return Wording::of(EditTexts::tr("Remove Tag %1"), {edit.bin});
    case EditHistory::Kind::setSecondBin:
        return Wording::of(EditTexts::tr("Second Bin %1"), {edit.bin});
    case EditHistory::Kind::removeSecondBin:
        return EditTexts::tr("No Second Bin");
    case EditHistory::Kind::confirm:
        return EditTexts::tr("Confirm");
    case EditHistory::Kind::confirmAll:
        return EditTexts::tr("Confirm All");
    }
    Q_UNREACHABLE();
}

} // namespace

void EditTexts::follow(SortEngine &engine)
{
    connect(&engine, &SortEngine::editsChanged, this, &EditTexts::changed);
}

QString EditTexts::undo() const
{
    return canUndo() ? Wording::of(tr("Undo %1"), {nameOf(*m_engine->editToUndo())}) : tr("Undo");
}

QString EditTexts::redo() const
{
    return canRedo() ? Wording::of(tr("Redo %1"), {nameOf(*m_engine->editToRedo())}) : tr("Redo");
}

} // namespace larkspan
