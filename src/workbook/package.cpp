#include "workbook/package.h"

#include <zip.h>

#include <unordered_set>

#include "workbook/content_types.h"
#include "workbook/package_data.h"
#include "workbook/part_name.h"
#include "workbook/xml_text.h"

namespace quillmarden {

namespace {

constexpr std::string_view kRelationshipsType = "application/vnd.openxmlformats-package.relationships+xml";

[[noreturn]] void fail(WorkbookFault fault, std::string_view part, const std::string& text) {
  throw WorkbookError(fault, std::string(part), text);
}

/// Forms that are no zip file, told by their first bytes.
void checkForm(std::string_view bytes) {
  if (bytes.starts_with("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1")) {
    constexpr std::string_view kEncrypted("E\0n\0c\0r\0y\0p\0t\0e\0d\0P\0a\0c\0k\0a\0g\0e\0", 32);
    if (bytes.find(kEncrypted) != std::string_view::npos)
      fail(WorkbookFault::Encrypted, "", "パスワードで保護されたブックです.");
    fail(WorkbookFault::OldBinaryForm, "", "旧形式 (バイナリ) のブックです.");
  }
  const bool binaryStream = bytes.size() > 8 && bytes[0] == 9 && (bytes[1] & ~0x0E) == 0 && bytes[3] == 0;
  if (binaryStream) fail(WorkbookFault::OldBinaryForm, "", "旧形式 (バイナリ) のブックです.");
  if (!bytes.starts_with("PK")) fail(WorkbookFault::NotAWorkbook, "", "ブックではありません.");
}

std::shared_ptr<ZipArchive> openArchive(std::string bytes) {
  auto archive = std::make_shared<ZipArchive>();
  archive->bytes = std::move(bytes);
  zip_error_t error;
  zip_error_init(&error);
  zip_source_t* source = zip_source_buffer_create(archive->bytes.data(), archive->bytes.size(), 0, &error);
  if (source != nullptr) {
    archive->handle = zip_open_from_source(source, ZIP_RDONLY, &error);
    if (archive->handle == nullptr) zip_source_free(source);
  }
  const int code = zip_error_code_zip(&error);
  zip_error_fini(&error);
  if (archive->handle == nullptr)
    fail(WorkbookFault::Damaged, "", "ファイルが途中で切れているか, 壊れています (" + std::to_string(code) + ").");
  return archive;
}

/// Adds up what the entries unpack to, against the limits.
class Budget {
 public:
  explicit Budget(const PackageLimits& limits) : limits_(limits) {}

  void add(const std::string& name, const zip_stat_t& entry) {
    constexpr zip_uint64_t kNeeded = ZIP_STAT_SIZE | ZIP_STAT_COMP_SIZE | ZIP_STAT_NAME;
    if ((entry.valid & kNeeded) != kNeeded) fail(WorkbookFault::Damaged, name, "大きさが分かりません.");
    const std::uint64_t packed = std::max<std::uint64_t>(entry.comp_size, 1);
    const bool bomb = entry.size > (1U << 20) && entry.size / packed > limits_.ratio;
    if (entry.size > limits_.partBytes || bomb) fail(WorkbookFault::TooLarge, name, "展開すると大きくなりすぎます.");
    total_ += entry.size;
    if (total_ > limits_.totalBytes) fail(WorkbookFault::TooLarge, name, "ブック全体が大きくなりすぎます.");
  }

 private:
  const PackageLimits& limits_;
  std::uint64_t total_ = 0;
};

}  // namespace

ZipArchive::~ZipArchive() {
  if (handle != nullptr) zip_discard(handle);
}

std::string readEntry(const ZipArchive& archive, const PackagePart& part) {
  const auto damaged = [&]() { fail(WorkbookFault::Damaged, part.name, "データが壊れています."); };
  std::unique_ptr<zip_file_t, int (*)(zip_file_t*)> file(zip_fopen_index(archive.handle, part.entry, 0), &zip_fclose);
  if (!file) damaged();
  std::string bytes;
  constexpr std::uint64_t kStep = 1U << 20;
  while (bytes.size() < part.size) {
    const std::size_t have = bytes.size();
    bytes.resize(static_cast<std::size_t>(std::min(part.size, have + kStep)));
    const zip_int64_t got = zip_fread(file.get(), bytes.data() + have, bytes.size() - have);
    if (got <= 0) damaged();
    bytes.resize(have + static_cast<std::size_t>(got));
  }
  // The read that meets the end is the one that compares the check sum.
  char more = 0;
  if (zip_fread(file.get(), &more, 1) != 0) damaged();
  return bytes;
}

PackagePart* Package::Data::find(std::string_view name) {
  const auto place = places.find(partKey(name));
  return place == places.end() ? nullptr : &parts[place->second];
}

PackagePart& Package::Data::make(std::string_view name) {
  if (PackagePart* present = find(name)) {
    std::string kept = std::move(present->name);
    *present = PackagePart{};
    present->name = std::move(kept);
    return *present;
  }
  places.emplace(partKey(name), parts.size());
  parts.emplace_back();
  parts.back().name = name;
  return parts.back();
}

Relationships& Package::Data::ownRelationships(std::string_view part, const Relationships& present) {
  const std::string name = relationshipsPart(part);
  PackagePart* list = find(name);
  // A book of a thousand sheets is tied together one by one; its list is not copied for each.
  const bool alone = list != nullptr && !list->bytes && !list->archive && list->relations.use_count() == 1;
  if (!alone) {
    auto copy = std::make_shared<Relationships>(present);
    list = &make(name);
    list->relations = std::move(copy);
  }
  return *list->relations;
}

Package::Package() : data_(std::make_unique<Data>()) {
  data_->types.defaults = {{"rels", std::string(kRelationshipsType)}, {"xml", "application/xml"}};
  data_->typesChanged = true;
}
Package::Package(const Package& other) : data_(std::make_unique<Data>(*other.data_)) {}
Package::Package(Package&&) noexcept = default;
Package& Package::operator=(const Package& other) {
  data_ = std::make_unique<Data>(*other.data_);
  return *this;
}
Package& Package::operator=(Package&&) noexcept = default;
Package::~Package() = default;

Package Package::fromBytes(std::string bytes, const PackageLimits& limits) {
  checkForm(bytes);
  const std::shared_ptr<const ZipArchive> archive = openArchive(std::move(bytes));
  Package package;
  Data& data = *package.data_;
  const auto count = static_cast<std::uint64_t>(zip_get_num_entries(archive->handle, 0));
  if (count > limits.entries) fail(WorkbookFault::TooLarge, "", "ファイルの数が多すぎます.");
  Budget budget(limits);
  for (std::uint64_t entry = 0; entry < count; ++entry) {
    zip_stat_t state;
    if (zip_stat_index(archive->handle, entry, 0, &state) != 0) fail(WorkbookFault::Damaged, "", "目次が壊れています.");
    const std::string name(state.name == nullptr ? "" : state.name);
    budget.add(name, state);
    if (name.ends_with('/') && state.size == 0) continue;  // a folder, which is no part
    if (const std::string fault = partNameFault(name); !fault.empty()) fail(WorkbookFault::Damaged, name, fault);
    if (data.find(name)) fail(WorkbookFault::Damaged, name, "同じ名前が 2 つあります.");
    PackagePart& part = data.make(name);
    part.archive = archive;
    part.entry = entry;
    part.size = state.size;
  }
  if (!package.has(kTypesPart)) fail(WorkbookFault::NotAWorkbook, "", "ブックではありません.");
  data.types = ContentTypes::parse(xmlAsUtf8(package.bytes(kTypesPart), kTypesPart));
  data.typesChanged = false;
  return package;
}

std::vector<std::string> Package::names() const {
  std::vector<std::string> names;
  names.reserve(data_->parts.size());
  for (const PackagePart& part : data_->parts) names.push_back(part.name);
  return names;
}

bool Package::has(std::string_view name) const { return data_->find(name) != nullptr; }

std::string Package::bytes(std::string_view name) const {
  const PackagePart* part = data_->find(name);
  if (part == nullptr) fail(WorkbookFault::Damaged, name, "パートがありません.");
  if (part->bytes) return *part->bytes;
  if (part->archive) return readEntry(*part->archive, *part);
  if (part->relations) return part->relations->xml();
  std::string all;
  if (part->make)
    for (PartSource source = part->make(); source(all);) continue;
  return all;
}

bool Package::sameBytes(std::string_view name, std::string_view wanted) const {
  const PackagePart* part = data_->find(name);
  if (part == nullptr) return false;
  if (part->bytes) return *part->bytes == wanted;
  return (!part->archive || part->size == wanted.size()) && bytes(name) == wanted;
}

void Package::set(std::string_view name, std::string bytes) {
  data_->make(name).bytes = std::make_shared<const std::string>(std::move(bytes));
}

void Package::stream(std::string_view name, std::function<PartSource()> make, std::uint64_t about) {
  PackagePart& part = data_->make(name);
  part.make = std::move(make);
  part.size = about;
}

void Package::remove(std::string_view name) {
  const auto drop = [&](std::string_view part) {
    const auto place = data_->places.find(partKey(part));
    if (place == data_->places.end()) return;
    const std::size_t index = place->second;
    data_->places.erase(place);
    data_->parts.erase(data_->parts.begin() + static_cast<std::ptrdiff_t>(index));
    for (auto& [key, at] : data_->places)
      if (at > index) --at;
  };
  drop(name);
  drop(relationshipsPart(name));
  editContentTypes().removePart(name);
}

const ContentTypes& Package::contentTypes() const { return data_->types; }

ContentTypes& Package::editContentTypes() {
  data_->typesChanged = true;
  return data_->types;
}

const Relationships& Package::relationships(std::string_view part) const {
  static const Relationships kNone;
  const PackagePart* found = data_->find(relationshipsPart(part));
  if (found == nullptr) return kNone;
  if (!found->relations) {
    const std::string xml = xmlAsUtf8(bytes(found->name), found->name);
    found->relations = std::make_shared<Relationships>(Relationships::parse(xml, found->name));
  }
  return *found->relations;
}

void Package::setRelationships(std::string_view part, Relationships relationships) {
  data_->make(relationshipsPart(part)).relations = std::make_shared<Relationships>(std::move(relationships));
}

std::string Package::relate(std::string_view part, std::string_view type, std::string_view target) {
  const Relationships& present = relationships(part);
  const std::string relative = relativeTarget(part, target);
  for (const Relationship& item : present.items)
    if (!item.external && item.type == type && item.target == relative) return item.id;
  Relationships& all = data_->ownRelationships(part, present);
  all.items.push_back({all.freeId(), std::string(type), relative, false});
  return all.items.back().id;
}

std::vector<std::string> Package::relateAll(std::string_view part, std::string_view type,
                                            const std::vector<std::string>& targets) {
  Relationships& all = data_->ownRelationships(part, relationships(part));
  std::unordered_set<std::string> taken;
  for (const Relationship& item : all.items) taken.insert(item.id);
  std::vector<std::string> ids;
  for (const std::string& target : targets) {
    std::size_t number = all.items.size() + 1;
    std::string id;
    do id = "rId" + std::to_string(number++);
    while (!taken.insert(id).second);
    all.items.push_back({id, std::string(type), relativeTarget(part, target), false});
    ids.push_back(std::move(id));
  }
  return ids;
}

std::string Package::add(std::string_view stem, std::string_view extension, std::string_view contentType,
                         std::string bytes) {
  std::string name;
  int& number = data_->lastNumbers[partKey(stem)];
  do {
    name = std::string(stem) + std::to_string(++number) + "." + std::string(extension);
  } while (has(name));
  const std::string_view usual = usualContentType(extension);
  if (contentType.empty() && usual.empty()) fail(WorkbookFault::BadValue, name, "種類の分からないデータです.");
  const std::string_view type = contentType.empty() ? usual : contentType;
  ContentTypes& types = editContentTypes();
  if (type != usual || !types.setDefault(extension, type)) types.setType(name, type);
  set(name, std::move(bytes));
  return name;
}

}  // namespace quillmarden
