#pragma once

#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "databook/selection.h"
#include "databook/template.h"
#include "platform/ado/adodc.h"
#include "platform/jet/value.h"
#include "support/test_session.h"

namespace zenvora::transfer {

/// A Databook of listings and sales, judged as of 6/30/2010.
class AuditTest : public testing::Test {
  protected:
    using Fields = std::vector<std::pair<std::string_view, jet::Value>>;
    static constexpr const char* kHead =
        "Listings:\r\nAddr, City, State, Zip, Orig List Dt, Orig List $, Curr List Dt, Curr List $, Cont Dt, "
        "List Cancel Dt, Sale Dt, Sale $\r\n";

    AuditTest() {
        databook::CreateTemplate(folder / "BOOK.mdb", test.clock.Now());
        Select();
    }
    void Select() {
        adoDatabook.Connectionstring = "Data Source=" + (folder / "BOOK.mdb").string() + ";Mode=ReadWrite";
        databook::AdoSelect(adoDatabook, "COMPS", databook::kMainFieldList, databook::kKeyOrder);
    }
    [[nodiscard]] static jet::Value On(int year, int month, int day) {
        return jet::DateTime{text::DayNumber(year, month, day).value()};
    }
    [[nodiscard]] jet::Value DaysBack(int days) const { return jet::DateTime{effective - days}; }

    /// Many records are made durable together.
    struct Batch {
        ado::Recordset& records;
        explicit Batch(ado::Recordset& written) : records(written) { records.BeginBatch(); }
        ~Batch() { records.EndBatch(); }
    };
    /// A record with the flag "1" and sound list values, and with `fields` on top.
    void Add(const std::string& key, const Fields& fields = {}) {
        ado::Recordset& records = adoDatabook.Recordset();
        records.AddNew();
        records.SetValue("CENTRALKEY", key);
        records.SetValue("ADDRESS", key);
        records.SetValue("ORIGLISTDATE", On(2009, 1, 30));
        records.SetValue("ORIGLISTPRICE", 259900.0);
        records.SetValue("LASTLISTDATE", On(2009, 2, 15));
        records.SetValue("LASTLISTPRICE", 249900.0);
        records.SetValue("SELECTED", std::string("1"));
        for (const auto& [column, value] : fields)
            records.SetValue(column, value);
        records.Update();
    }
    void AddListings(int count) {
        const Batch batch(adoDatabook.Recordset());
        for (int i = 1; i <= count; ++i)
            Add("L" + std::to_string(1000 + i));
    }
    void AddSales(int count, int daysBack = 30) {
        const Batch batch(adoDatabook.Recordset());
        for (int i = 1; i <= count; ++i)
            Add("S" + std::to_string(1000 + i), {{"SALEDATE", DaysBack(daysBack)}, {"SELLINGPR", 250000.0}});
    }
    /// The line of AddListings and of AddSales.
    [[nodiscard]] static std::string Listing(int number) {
        return "L" + std::to_string(1000 + number) +
               ", , , , 1/30/2009, 259900, 2/15/2009, 249900, , , , , \r\n";
    }
    [[nodiscard]] static std::string Sale(int number) {
        return "S" + std::to_string(1000 + number) +
               ", , , , 1/30/2009, 259900, 2/15/2009, 249900, , , 5/31/2010, 250000, \r\n";
    }
    [[nodiscard]] static std::string Listings(int first, int last) {
        std::string lines;
        for (int i = first; i <= last; ++i)
            lines += Listing(i);
        return lines;
    }
    [[nodiscard]] static std::string Sales(int first, int last) {
        std::string lines;
        for (int i = first; i <= last; ++i)
            lines += Sale(i);
        return lines;
    }

    testing_support::TempFolder folder;
    testing_support::TestSession test;
    ado::Adodc adoDatabook{test.databooks, test.clock};
    common::Date effective = text::DayNumber(2010, 6, 30).value();
};

}  // namespace zenvora::transfer
