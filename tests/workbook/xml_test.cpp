#include <gtest/gtest.h>

#include "packages.h"
#include "workbook/xml_sections.h"
#include "workbook/xml_text.h"

namespace quillmarden {
namespace {

const std::vector<std::string_view> kOrder{"a", "b", "c", "d"};

XmlSections sections(std::string_view xml) { return XmlSections::parse(xml, "part", "root"); }

TEST(Xml, anUntouchedPartKeepsEveryByte) {
  for (const char* xml : {
           "<root/>x",
           "<?xml version='1.0'?>\r\n<!-- note --><root  a = '1'\n b=\">\" >\n <a>x<!-- y --></a >  <!-- z "
           "-->\t<zz/><b><![CDATA[<a>]]></b>\n</root>\n<!-- end -->",
           "<p:root xmlns:p=\"u\"><p:a p:x=\"1\"/>&amp;<mc:AlternateContent><mc:Choice/></mc:AlternateContent></p:root "
           ">",
       }) {
    const std::string text(xml);
    if (text.ends_with("x")) {
      EXPECT_EQ(errorOf([&] { sections(text); }).fault(), WorkbookFault::Damaged) << "text behind the root";
    } else {
      EXPECT_EQ(sections(text).xml(), text);
    }
  }
  EXPECT_EQ(sections("<root a='1'/>").xml(), "<root a='1'></root>");
}

TEST(Xml, newChildrenFindTheirPlace) {
  const auto with = [](std::string_view xml, std::string_view name) {
    XmlSections all = sections(xml);
    all.put(name, "<" + std::string(name) + " new=\"1\"/>", kOrder);
    return all.xml();
  };
  EXPECT_EQ(with("<root/>", "b"), "<root><b new=\"1\"/></root>");
  EXPECT_EQ(with("<root><a/><c/><zz/></root>", "b"), "<root><a/><b new=\"1\"/><c/><zz/></root>");
  EXPECT_EQ(with("<root>\n <a/>\n <c/>\n</root>", "d"), "<root>\n <a/>\n <c/><d new=\"1\"/>\n</root>");
  EXPECT_EQ(with("<root><c/></root>", "a"), "<root><a new=\"1\"/><c/></root>");
  EXPECT_EQ(with("<root><b old=\"1\"/><b/></root>", "b"), "<root><b new=\"1\"/><b/></root>") << "the first of its name";
  EXPECT_EQ(
      with("<root><m:AlternateContent><m:Choice Requires=\"x\"><c/></m:Choice></m:AlternateContent></root>", "d"),
      "<root><m:AlternateContent><m:Choice Requires=\"x\"><c/></m:Choice></m:AlternateContent><d new=\"1\"/></root>");
  EXPECT_EQ(
      with("<root><m:AlternateContent><m:Choice Requires=\"x\"><c/></m:Choice></m:AlternateContent></root>", "b"),
      "<root><b new=\"1\"/><m:AlternateContent><m:Choice Requires=\"x\"><c/></m:Choice></m:AlternateContent></root>");
}

TEST(Xml, prefixesOfNamespaces) {
  XmlSections none = sections("<root xmlns:rel=\"other\"/>");
  EXPECT_EQ(none.ensurePrefix("rel", "u"), "relq");
  EXPECT_EQ(none.ensurePrefix("rel", "u"), "relq");
  EXPECT_EQ(none.head, "<root xmlns:rel=\"other\" xmlns:relq=\"u\">");
  EXPECT_EQ(sections("<q:root xmlns:z='strict'/>").ensurePrefix("r", "u", "strict"), "z");
  EXPECT_EQ(sections("<q:root/>").prefix(), "q:");
}

TEST(Xml, attributesOfATag) {
  EXPECT_EQ(withAttribute("<a count=\"1\" uniqueCount='2'>", "count", "9"), "<a count=\"9\" uniqueCount='2'>");
  EXPECT_EQ(withAttribute("<a uniqueCount='2' count=\"1\"/>", "count", std::nullopt), "<a uniqueCount='2'/>");
  EXPECT_EQ(withAttribute("<a>", "b", "<\"&\n"), "<a b=\"&lt;&quot;&amp;&#10;\">");
  EXPECT_EQ(withAttribute("<a/>", "b", "1"), "<a b=\"1\"/>");
}

TEST(Xml, whatIsNoXml) {
  for (const char* xml : {"", "<root>", "<root></rood>", "<root", "<root a=1/>", "<root a/>", "<root><a></root></a>",
                          "<root/><root/>", "<root>]]", "<!-- <root/>", "<root><![CDATA[x</root>", "<root a='<'/>",
                          "text<root/>", "<other/>", "< root/>"}) {
    const auto read = [&] {
      XmlSections all = sections(xml);
      all.ensurePrefix("r", "u");
    };
    EXPECT_EQ(errorOf(read).part(), "part") << xml;
  }
}

TEST(Xml, encodings) {
  const std::string text = "<?xml version=\"1.0\" encoding=\"UTF-16\"?><a>é日😀</a>";
  for (const bool big : {true, false}) {
    std::string bytes = big ? "\xFE\xFF" : "\xFF\xFE";
    const std::u16string units = u"<?xml version=\"1.0\" encoding=\"UTF-16\"?><a>é日😀</a>";
    for (const char16_t unit : units) {
      const char high = static_cast<char>(unit >> 8);
      const char low = static_cast<char>(unit & 0xFF);
      bytes.append({big ? high : low, big ? low : high});
    }
    EXPECT_EQ(xmlAsUtf8(bytes, "part"), "<?xml version=\"1.0\" encoding=\"UTF-8\"?><a>é日😀</a>");
  }
  EXPECT_EQ(xmlAsUtf8("\xEF\xBB\xBF<a/>", "part"), "<a/>");
  EXPECT_EQ(errorOf([] { xmlAsUtf8("<?xml version='1.0' encoding='Shift_JIS'?><a/>", "part"); }).part(), "part");
  EXPECT_EQ(xmlDecode("a&amp;b&#x65E5;&#26085;&lt;&unknown;&#0;&#xD800;&\r\n\rx"),
            "a&b日日<&unknown;&#0;&#xD800;&\n\nx");
  EXPECT_EQ(cellTextDecode("_x000D_x_x0041_x_x004_"), "\rxAx_x004_");
}

}  // namespace
}  // namespace quillmarden
