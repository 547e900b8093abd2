// SPDX-License-Identifier: MIT
// Every file of the repository, and every cut of it, comes back from its JSON byte for byte, in
// whatever format it is read. The fuzz target damages them.
#include "tests/apps/dump_support.h"
#include "tests/support/folders.h"

using namespace kor_test;

namespace {

constexpr std::size_t small = 2000; // bytes of the files that are cut at every length

// What the fuzz targets' and golden archives' classes write.
constexpr std::string_view test_layouts = R"(
class FuzzTreeNode 2 : CTreeNode
    text string
class FuzzText 2
    wide string
    narrow string
    flag bool
    number f64
class FuzzNode 3
    text object
    any object
    nodes object[]
class FuzzVersioned 4 : FuzzNode
)";

struct Sample {
    std::string name;
    std::string bytes;
};

// Seeds have a header for their fuzz target in front of the archive.
void add_without_header(std::vector<Sample> &samples, std::filesystem::path const &path)
{
    std::string const folder = path.parent_path().filename().string();
    std::string const bytes = read_file(path);
    std::size_t const script_end = bytes.find('\0', 2);
    if (folder == "tree")
        samples.push_back({ path.string() + " behind its header", bytes.substr(1) });
    else if (folder == "archive" && script_end != std::string::npos)
        samples.push_back({ path.string() + " behind its header", bytes.substr(script_end + 1) });
}

std::vector<Sample> find_samples()
{
    std::vector<Sample> samples;
    std::filesystem::path const top(kor_test::source_folder());
    for (char const *const folder : { "samples", "tests/data", "fuzz/corpus" }) {
        for (auto const &entry : std::filesystem::recursive_directory_iterator(top / folder)) {
            if (!entry.is_regular_file() || entry.path().extension() == ".tsv")
                continue;
            samples.push_back({ entry.path().string(), read_file(entry.path()) });
            add_without_header(samples, entry.path());
        }
    }
    EXPECT_GT(samples.size(), 100U);
    return samples;
}

std::vector<kordump::Plan> make_plans(std::string_view bytes)
{
    std::vector<kordump::Plan> plans { make_plan(bytes) };
    for (char const *const format : { "archive", "custom-data", "preferences", "tree", "raw" }) {
        plans.push_back(make_plan(bytes, format));
        plans.back().layouts = parse_layouts(test_layouts);
    }
    plans.push_back(make_plan(bytes, "archive"));
    plans.back().top = kordump::LayoutTable::ParseFields(
        "u8 string count i16[] custom_data f32 object string[] bool u8[] f64[] time tree object[]");
    return plans;
}

} // namespace

TEST(RoundTrip, EveryFileInEveryFormat)
{
    for (Sample const &sample : find_samples()) {
        for (kordump::Plan const &plan : make_plans(sample.bytes))
            EXPECT_TRUE(comes_back(sample.bytes, plan))
                << sample.name << " as " << get_format_name(plan.format);
    }
}

TEST(RoundTrip, EveryCut)
{
    for (Sample const &sample : find_samples()) {
        kordump::Plan plan = make_plan(sample.bytes);
        plan.layouts = parse_layouts(test_layouts);
        for (std::size_t size = 0; size < std::min(sample.bytes.size(), small); ++size)
            ASSERT_TRUE(comes_back(sample.bytes.substr(0, size), plan))
                << sample.name << " cut to " << size;
    }
}
