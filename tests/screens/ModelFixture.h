#pragma once

#include <QtCore/QAbstractItemModel>

#include "tests/core/engine/SortEngineFixture.h"

namespace larkspan::test {

// An engine on made clips for a model of a screen to follow.
class ModelTest : public SortEngineTest
{
protected:
    void sortShoot()
    {
        engine.sortFolder(shoot);
        ASSERT_TRUE(reaches(engine, StageKind::results));
    }

    SortEngine engine{seams(), 4}; // two clips at a time, whatever the machine
};

// Returns the texts of a role of a model's rows, from the first row on.
inline std::vector<QString> column(const QAbstractItemModel &model, int role)
{
    std::vector<QString> texts;
    for (int row = 0; row < model.rowCount(); ++row) {
        texts.push_back(model.index(row, 0).data(role).toString());
    }
    return texts;
}

} // namespace larkspan::test
