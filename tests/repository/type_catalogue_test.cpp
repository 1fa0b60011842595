#include "repository/type_catalogue.h"

#include "repository_fixture.h"

namespace quillmarden {
namespace {

class Catalogue : public RepositoryTest {};

TEST_F(Catalogue, LookUpIsWithoutCaseAndReadsOnce) {
  Database database = createRepository(file());
  // Rows of other tools may leave all but the key empty.
  database.execute("INSERT INTO MAS_FILETYPE (ファイル種別, 型) VALUES ('Oracle', 'MyType')");
  TypeCatalogue catalogue;
  const FileType* link = gChkFileType(database, catalogue, "pg管理", "FILELINK");
  ASSERT_TRUE(link);
  EXPECT_EQ(link->digits, 250);
  EXPECT_EQ(link->type, "FileLink");

  const long statements = database.statementCount();
  EXPECT_FALSE(gChkFileType(database, catalogue, "Oracle", "varchar"));
  EXPECT_FALSE(gChkFileType(database, catalogue, "", ""));
  ASSERT_TRUE(gChkFileType(database, catalogue, "ORACLE", "mytype"));
  EXPECT_EQ(gChkFileType(database, catalogue, "ORACLE", "mytype")->digits, 0);
  EXPECT_EQ(database.statementCount(), statements);
}

TEST_F(Catalogue, UnknownTypeTakesDigitsAndIsNotNumeric) {
  Database database = createRepository(file());
  TypeCatalogue catalogue;
  const auto rule = [&](const char* kind, const char* type) {
    const DigitRule found = gFileType_NoDigits(database, catalogue, kind, type);
    return std::pair(found.noDigits, found.numeric);
  };
  EXPECT_EQ(rule("SQL Server", "INT IDENTITY"), std::pair(true, true));
  EXPECT_EQ(rule("SQL Server", "nvarchar"), std::pair(false, false));
  EXPECT_EQ(rule("SQL Server", "datetime2"), std::pair(false, false));
  EXPECT_EQ(rule("Oracle", "number"), std::pair(false, true));
}

}  // namespace
}  // namespace quillmarden
