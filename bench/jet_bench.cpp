// The engine alone: rows in and out of a Databook on the machine's disk. ZENVORA_BENCH_ROWS sets the size of
// the table that is read (default 300,000 rows).

#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <unistd.h>
#include <vector>

#include "platform/jet/database.h"
#include "platform/jet/verify.h"

namespace {

using namespace zenvora;
namespace fs = std::filesystem;

constexpr text::Date kNow = 46000;

jet::NewColumn Column(const char* name, jet::ColumnType type, int characters = 0) {
    jet::NewColumn column;
    column.name = name;
    column.type = type;
    column.characters = characters;
    return column;
}

jet::NewTable Comparables() {
    jet::NewTable table;
    table.name = "COMPS";
    table.columns = {
        Column("CENTRALKEY", jet::ColumnType::Text, 50),  Column("ADDRESS", jet::ColumnType::Text, 50),
        Column("CITY", jet::ColumnType::Text, 30),        Column("SELLINGPR", jet::ColumnType::Double),
        Column("SALEDATE", jet::ColumnType::DateTime),    Column("ORIGLISTPRICE", jet::ColumnType::Double),
        Column("ORIGLISTDATE", jet::ColumnType::DateTime)};
    jet::NewIndex key;
    key.name = "PrimaryKey";
    key.columns = {"CENTRALKEY"};
    key.primaryKey = true;
    table.indexes = {key};
    return table;
}

std::vector<jet::Value> Row(unsigned number) {
    const std::string street = std::to_string(number * 2654435761U % 1000000007U) + " Oak Street";
    return {street,
            street,
            std::string("Troy"),
            250000.0 + number,
            jet::DateTime{40000.0 + number % 365},
            259900.0,
            jet::DateTime{39900.0 + number % 365}};
}

fs::path BenchPath(const char* name) {
    return fs::temp_directory_path() / (std::to_string(::getpid()) + name);
}

void MakeDatabook(const fs::path& path, unsigned rows) {
    fs::remove(path);
    const auto database = jet::Database::Create(path, kNow);
    jet::Table& table = database->CreateTable(Comparables(), kNow);
    database->Begin();
    for (unsigned i = 0; i < rows; ++i)
        table.Insert(Row(i));
    database->Commit();
}

void InsertWithPrimaryKey(benchmark::State& state) {
    const auto rows = static_cast<unsigned>(state.range(0));
    const fs::path path = BenchPath("-insert.mdb");
    std::vector<std::vector<jet::Value>> values;
    for (unsigned i = 0; i < rows; ++i)
        values.push_back(Row(i));
    for (auto _ : state) {
        state.PauseTiming();
        fs::remove(path);
        auto database = jet::Database::Create(path, kNow);
        jet::Table& table = database->CreateTable(Comparables(), kNow);
        state.ResumeTiming();
        database->Begin();
        for (const auto& row : values)
            table.Insert(row);
        database->Commit();
        state.PauseTiming();
        database.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(rows));
    fs::remove(path);
}
BENCHMARK(InsertWithPrimaryKey)->Arg(32000)->Arg(300000)->Unit(benchmark::kMillisecond);

unsigned RowsToRead() {
    const char* const rows = std::getenv("ZENVORA_BENCH_ROWS");
    return rows != nullptr ? static_cast<unsigned>(std::strtoul(rows, nullptr, 10)) : 300000;
}

const fs::path& ReadFile() {
    static const struct File {
        fs::path path = BenchPath("-read.mdb");
        File() { MakeDatabook(path, RowsToRead()); }
        ~File() { fs::remove(path); }
    } file;
    return file.path;
}

void SetBytes(benchmark::State& state) {
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(fs::file_size(ReadFile())));
}

void ReadBytes(const fs::path& path) {
    std::vector<char> buffer(std::size_t{1} << 18);
    std::ifstream file(path, std::ios::binary);
    while (file.read(buffer.data(), static_cast<std::streamsize>(buffer.size())))
        benchmark::DoNotOptimize(buffer[0]);
}

void ReadValues(const fs::path& path) {
    const auto database = jet::Database::Open(path, jet::Database::Access::ReadOnly);
    const jet::Table& table = database->OpenTable("COMPS");
    std::string text;
    double sum = 0;
    table.Scan([&](const jet::RowView& row) {
        text.clear();
        for (std::size_t column = 0; column < 3; ++column)
            row.AppendText(column, text);
        for (std::size_t column = 3; column < 7; ++column)
            sum += row.Number(column);
        return true;
    });
    benchmark::DoNotOptimize(sum);
}

void ReadTheBytesAlone(benchmark::State& state) {
    static_cast<void>(ReadFile());  // made before the time is taken
    for (auto _ : state)
        ReadBytes(ReadFile());
    SetBytes(state);
}

void OpenAndReadEveryValue(benchmark::State& state) {
    static_cast<void>(ReadFile());
    for (auto _ : state)
        ReadValues(ReadFile());
    SetBytes(state);
}

/// Nothing of the file is in memory behind this.
void Forget(const fs::path& path) {
    const int file = ::open(path.c_str(), O_RDONLY);
    static_cast<void>(::fdatasync(file));
    static_cast<void>(::posix_fadvise(file, 0, 0, POSIX_FADV_DONTNEED));
    ::close(file);
}

double Seconds(const std::function<void()>& work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

/// A file of some 200 MB from the disk: every value of it, and the bytes alone, by turns. `ofBytes` is the
/// speed of the one as a part of that of the other, and is to be 0.5 or more.
void ColdReadOfALargeFile(benchmark::State& state) {
    constexpr unsigned kRowsOfLargeFile = 1350000;
    const fs::path path = BenchPath("-large.mdb");
    MakeDatabook(path, kRowsOfLargeFile);
    double bytesAlone = 0;
    double values = 0;
    for (auto _ : state) {
        Forget(path);
        bytesAlone += Seconds([&] { ReadBytes(path); });
        Forget(path);
        values += Seconds([&] { ReadValues(path); });
    }
    state.counters["MB"] = static_cast<double>(fs::file_size(path)) / 1e6;
    state.counters["bytesAlone_s"] = bytesAlone / static_cast<double>(state.iterations());
    state.counters["everyValue_s"] = values / static_cast<double>(state.iterations());
    state.counters["ofBytes"] = bytesAlone / values;
    fs::remove(path);
}
BENCHMARK(ColdReadOfALargeFile)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);

void VerifyTheFile(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(jet::Verify(ReadFile()));
    SetBytes(state);
}

/// What another reader of the same file needs to print it, when it is installed.
void MdbExportOfTheSameFile(benchmark::State& state) {
    const std::string command = "mdb-export '" + ReadFile().string() + "' COMPS > /dev/null";
    for (auto _ : state) {
        if (std::system(command.c_str()) != 0) {
            state.SkipWithError("mdb-export is not installed");
            break;
        }
    }
    SetBytes(state);
}

BENCHMARK(ReadTheBytesAlone)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(OpenAndReadEveryValue)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(VerifyTheFile)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(MdbExportOfTheSameFile)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
