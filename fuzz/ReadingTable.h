#pragma once

#include "Target.h"
#include "model/TableFeeds.h"

namespace korvale::fuzz {

/// Asks for every text that a table could show, and keeps to what a table promises.
class ReadingTable final : public TableFeed {
public:
    void loadData(RowBatchPtr rows) override { read(rows.get()); }
    void addData(RowBatchPtr rows) override {
        require(rows != nullptr && rows->size() <= mostTableRows);
        read(rows.get());
    }
    void updateView() override {}

private:
    static void read(const RowBatch* rows) {
        for (std::size_t row = 0; rows != nullptr && row < rows->size(); ++row) {
            for (int key = 0; key <= static_cast<int>(RowKey::EveryPath); ++key) {
                const auto text = rows->text(row, static_cast<RowKey>(key));
                require(!text || text->isValidUtf16());
            }
        }
    }
};

} // namespace korvale::fuzz
