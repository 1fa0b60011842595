#include "workbook/package.h"

#include <gtest/gtest.h>
#include <malloc.h>
#include <sys/resource.h>

#include <csignal>
#include <cstdlib>
#include <fstream>

#include "packages.h"

namespace quillmarden {
namespace {

/// A folder that goes at the end.
class FolderTest : public testing::Test {
 protected:
  FolderTest() {
    std::string name = (std::filesystem::temp_directory_path() / "qm_workbook_XXXXXX").string();
    folder = ::mkdtemp(name.data());
  }
  ~FolderTest() override { std::filesystem::remove_all(folder); }

  std::size_t files() const {
    return static_cast<std::size_t>(
        std::distance(std::filesystem::directory_iterator(folder), std::filesystem::directory_iterator()));
  }

  std::filesystem::path folder;
};

using PackageSave = FolderTest;

const std::string kTypes =
    "<Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\">"
    "<Default Extension=\"xml\" ContentType=\"application/xml\"/></Types>";

Parts withTypes(Parts parts) {
  parts.insert(parts.begin(), {"[Content_Types].xml", kTypes});
  return parts;
}

TEST(Package, unchangedPartsKeepTheirBytesAndPlaces) {
  const Parts parts = partsIn("template");
  const std::string original = zipOf(parts);
  Package package = Package::fromBytes(original);
  package.set("xl/media/image1.png", "new");
  const std::string written = package.zip();
  EXPECT_EQ(written, package.zip()) << "the same content gives the same bytes";
  const Package again = Package::fromBytes(written);
  ASSERT_EQ(again.names().size(), parts.size());
  for (std::size_t i = 0; i < parts.size(); ++i) {
    EXPECT_EQ(again.names()[i], parts[i].first);
    EXPECT_EQ(again.bytes(parts[i].first), parts[i].first == "xl/media/image1.png" ? "new" : parts[i].second);
  }
}

TEST(Package, copiesDoNotSeeEachOthersChanges) {
  const Package first = Package::fromBytes(zipOf(withTypes({{"a.xml", "1"}, {"b.xml", "2"}})));
  Package second = first;
  second.set("A.XML", "changed");
  second.remove("b.xml");
  EXPECT_EQ(first.bytes("a.xml"), "1");
  EXPECT_TRUE(first.has("b.xml"));
  EXPECT_EQ(second.bytes("a.xml"), "changed") << "names compare without case";
  EXPECT_EQ(second.names(), (std::vector<std::string>{"[Content_Types].xml", "a.xml"}));
  EXPECT_EQ(second.add("a", "xml", "application/x", "3"), "a1.xml");
  EXPECT_EQ(second.contentTypes().typeOf("a1.xml"), "application/x");
}

TEST(Package, partsThatAreMadeWhileWriting) {
  Package package;
  // Guessed too high and too low; pieces of odd sizes.
  for (const std::uint64_t guess : {10U, 100000000U}) {
    package.stream(
        "long.xml",
        [] {
          return [piece = 0](std::string& out) mutable {
            if (piece == 5000) return false;
            out += std::string(static_cast<std::size_t>(piece % 7), 'x') + std::to_string(piece);
            ++piece;
            return true;
          };
        },
        guess);
    const std::string expected = package.bytes("long.xml");
    EXPECT_GT(expected.size(), 30000U);
    const std::string zip = package.zip();
    EXPECT_EQ(Package::fromBytes(zip).bytes("long.xml"), expected);
    // The form for giant files (extra field 1) makes some programs ask for a repair.
    EXPECT_EQ(zip.find(std::string("\x01\x00\x10\x00", 4)), std::string::npos);
  }
}

TEST(Package, aFaultOfASourceComesThroughWithNothingLeftBehind) {
  Package package;
  package.set("good.xml", std::string(300000, 'x'));
  const auto fault = [] { throw WorkbookError(WorkbookFault::BadValue, "bad.xml", "x"); };
  const auto failing = [&](bool early) {
    package.stream(
        "bad.xml",
        [=]() -> PartSource {
          if (early) fault();
          return [=, sent = 0](std::string& out) mutable {
            if (sent++ == 3) fault();
            out += std::string(50000, 'y');
            return true;
          };
        },
        1000);
    return errorOf([&] { package.zip(); });
  };
  EXPECT_EQ(failing(true).fault(), WorkbookFault::BadValue);
  EXPECT_EQ(failing(false).part(), "bad.xml");
  const std::size_t before = mallinfo2().uordblks;
  for (int i = 0; i < 20; ++i) failing(i % 2 == 0);
  EXPECT_LT(mallinfo2().uordblks, before + 100000);
  package.remove("bad.xml");
  EXPECT_EQ(Package::fromBytes(package.zip()).bytes("good.xml").size(), 300000U);
}

TEST(Package, damagedFilesAreToldApart) {
  const std::string good = zipOf(partsIn("template"));
  const auto fault = [](const std::string& bytes) { return errorOf([&] { Package::fromBytes(bytes); }).fault(); };
  EXPECT_EQ(fault(""), WorkbookFault::NotAWorkbook);
  EXPECT_EQ(fault("hello"), WorkbookFault::NotAWorkbook);
  EXPECT_EQ(fault(zipOf({{"x.txt", "a zip file of something else"}})), WorkbookFault::NotAWorkbook);
  EXPECT_EQ(fault(good.substr(0, good.size() / 2)), WorkbookFault::Damaged);
  EXPECT_EQ(fault(good.substr(0, good.size() - 30)), WorkbookFault::Damaged);
  const std::string compound = "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1";
  EXPECT_EQ(fault(compound + std::string(600, '\0')), WorkbookFault::OldBinaryForm);
  EXPECT_EQ(fault(std::string("\x09\x08\x08\x00\x00\x05\x05\x00\x00\x00", 10)), WorkbookFault::OldBinaryForm);
  std::string encrypted = compound + std::string(600, '\0');
  for (const char c : std::string_view("EncryptedPackage")) encrypted.append(1, c).append(1, '\0');
  EXPECT_EQ(fault(encrypted), WorkbookFault::Encrypted);

  std::string flipped = good;
  flipped[good.size() / 3] = static_cast<char>(flipped[good.size() / 3] ^ 0x55);
  int faults = 0;
  for (const auto& [name, bytes] : partsIn("template")) {
    try {
      if (Package::fromBytes(flipped).bytes(name) != bytes) ADD_FAILURE() << "a wrong byte went by in " << name;
    } catch (const WorkbookError& error) {
      EXPECT_EQ(error.fault(), WorkbookFault::Damaged);
      ++faults;
    }
  }
  EXPECT_GE(faults, 1);
}

TEST(Package, namesThatLeadOutside) {
  for (const char* name :
       {"../evil.xml", "xl/../../evil.xml", "/etc/passwd", "xl\\a.xml", "C:/a.xml", "xl//a.xml", "./a"}) {
    const WorkbookError error = errorOf([&] { Package::fromBytes(zipOf(withTypes({{name, "x"}}))); });
    EXPECT_EQ(error.fault(), WorkbookFault::Damaged) << name;
    EXPECT_EQ(error.part(), name);
  }
  // Two entries of one name can't be made with the library: one is renamed in the finished file.
  std::string twice = zipOf(withTypes({{"same1.xml", "x"}, {"same2.xml", "y"}}));
  for (std::size_t at = twice.find("same2"); at != std::string::npos; at = twice.find("same2")) twice[at + 4] = '1';
  EXPECT_EQ(errorOf([&] { Package::fromBytes(twice); }).part(), "same1.xml");
  EXPECT_EQ(Package::fromBytes(zipOf(withTypes({{"folder/", ""}, {"folder/a.xml", "1"}}))).names().size(), 2U);

  EXPECT_EQ(errorOf([] { resolveTarget("xl/workbook.xml", "../../x.xml"); }).fault(), WorkbookFault::Damaged);
  EXPECT_EQ(resolveTarget("xl/worksheets/sheet1.xml", "../media/a%20b.png"), "xl/media/a b.png");
  EXPECT_EQ(relativeTarget("xl/worksheets/sheet1.xml", "xl/media/image1.png"), "../media/image1.png");
}

TEST(Package, bombsAreRefusedUnopened) {
  const auto error = [](const Parts& parts, const PackageLimits& limits) {
    return errorOf([&] { Package::fromBytes(zipOf(withTypes(parts)), limits); });
  };
  const std::string zeros(4U << 20, '0');
  EXPECT_EQ(error({{"bomb.xml", zeros}}, {}).fault(), WorkbookFault::TooLarge);
  EXPECT_EQ(error({{"bomb.xml", zeros}}, {}).part(), "bomb.xml");
  EXPECT_EQ(error({{"a.xml", std::string(2000, 'x')}}, {.partBytes = 1000}).part(), "a.xml");
  EXPECT_EQ(error({{"a.xml", std::string(900, 'x')}, {"b.xml", std::string(900, 'x')}}, {.totalBytes = 1500}).part(),
            "b.xml");
  EXPECT_EQ(error({{"a.xml", ""}, {"b.xml", ""}}, {.entries = 2}).fault(), WorkbookFault::TooLarge);

  // A size that the file tells too small does not give more bytes than told.
  std::string lying = zipOf(withTypes({{"a.xml", std::string(5000, 'x')}}));
  const std::string size("\x88\x13\x00\x00", 4);
  for (std::size_t at = lying.find(size); at != std::string::npos; at = lying.find(size)) lying[at + 1] = 1;
  EXPECT_EQ(errorOf([&] { Package::fromBytes(lying).bytes("a.xml"); }).fault(), WorkbookFault::Damaged);
}

TEST_F(PackageSave, replacesTheFileAtTheEnd) {
  Package package;
  package.set("a.xml", "1");
  const std::filesystem::path file = folder / "本.xlsx";
  package.save(file);
  package.set("a.xml", "2");
  package.save(file);
  EXPECT_EQ(readFile(file), package.zip());
  EXPECT_EQ(files(), 1U);
}

TEST_F(PackageSave, failuresLeaveWhatWas) {
  Package package;
  std::string noise;
  for (unsigned i = 0, x = 1; i < 200000; ++i) noise += static_cast<char>((x = x * 1103515245 + 12345) >> 16);
  package.set("a.bin", noise);
  const std::filesystem::path file = folder / "a.xlsx";
  std::ofstream(file) << "former";
  EXPECT_EQ(errorOf([&] { package.save(folder / "missing" / "a.xlsx"); }).fault(), WorkbookFault::CannotWrite);
  EXPECT_EQ(errorOf([&] { package.save(folder); }).fault(), WorkbookFault::CannotWrite);

  // A disk that is full: no file may grow beyond a few pages.
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  rlimit small = before;
  small.rlim_cur = 20000;
  setrlimit(RLIMIT_FSIZE, &small);
  const WorkbookError error = errorOf([&] { package.save(file); });
  setrlimit(RLIMIT_FSIZE, &before);
  EXPECT_EQ(error.fault(), WorkbookFault::CannotWrite);
  EXPECT_EQ(error.part(), file.string());
  EXPECT_EQ(readFile(file), "former");
  EXPECT_EQ(files(), 1U) << "the half written file is gone";

  // Stopped wherever the person is asked on the way.
  int stopAt = 0;
  for (bool stopped = true; stopped; ++stopAt) {
    int asked = 0;
    stopped = false;
    try {
      package.save(file, [&] { return asked++ >= stopAt; });
    } catch (const WorkbookError& error) {
      stopped = error.fault() == WorkbookFault::Stopped;
      ASSERT_TRUE(stopped) << error.what();
      ASSERT_EQ(readFile(file), "former");
      ASSERT_EQ(files(), 1U);
    }
  }
  EXPECT_GT(stopAt, 10) << "a long part is no reason not to ask";
  EXPECT_EQ(readFile(file), package.zip());
}

}  // namespace
}  // namespace quillmarden
