#include <zip.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <system_error>

#include "common/replace_file.h"
#include "workbook/content_types.h"
#include "workbook/package.h"
#include "workbook/package_data.h"
#include "workbook/spill_buffer.h"

namespace quillmarden {

namespace {

// Half of the time of the usual level for files that are a tenth longer.
constexpr zip_uint32_t kDeflateLevel = 2;
// The first day of the zip format: what is written does not depend on when.
constexpr zip_uint16_t kDosDate = (1 << 5) | 1;

[[noreturn]] void cannotWrite(std::string_view part, const char* reason) {
  throw WorkbookError(WorkbookFault::CannotWrite, std::string(part), std::string("書き込めません: ") + reason);
}

/// A part's source as libzip reads it: in blocks of any size.
struct Feed {
  std::function<PartSource()> make;
  std::uint64_t about = 0;
  std::exception_ptr& fault;  ///< what the source has thrown, for the far side of libzip's frames
  PartSource source;
  std::string buffer;
  std::size_t taken = 0;
  zip_error_t error{};

  zip_int64_t read(char* out, std::size_t wanted) {
    std::size_t given = 0;
    while (given < wanted) {
      if (taken == buffer.size()) {
        buffer.clear();
        taken = 0;
        if (!source(buffer)) break;
        continue;
      }
      const std::size_t step = std::min(wanted - given, buffer.size() - taken);
      std::memcpy(out + given, buffer.data() + taken, step);
      given += step;
      taken += step;
    }
    return static_cast<zip_int64_t>(given);
  }
};

/// Runs a step of a source. No exception may pass through libzip, which would free nothing: it is an error there and
/// goes on behind it.
template <typename Step>
zip_int64_t guarded(Feed& feed, Step&& step) {
  try {
    return step();
  } catch (...) {
    feed.fault = std::current_exception();
    zip_error_set(&feed.error, ZIP_ER_INTERNAL, 0);
    return -1;
  }
}

zip_int64_t feedCommand(void* state, void* data, zip_uint64_t length, zip_source_cmd_t command) {
  auto* feed = static_cast<Feed*>(state);
  switch (command) {
    case ZIP_SOURCE_OPEN:
      return guarded(*feed, [&] {
        feed->source = feed->make();
        feed->buffer.clear();
        feed->taken = 0;
        return zip_int64_t{0};
      });
    case ZIP_SOURCE_READ:
      return guarded(*feed, [&] { return feed->read(static_cast<char*>(data), static_cast<std::size_t>(length)); });
    case ZIP_SOURCE_CLOSE:
      feed->source = nullptr;
      return 0;
    case ZIP_SOURCE_STAT: {
      auto* entry = static_cast<zip_stat_t*>(data);
      zip_stat_init(entry);
      // Without a size every entry would be written in the form for giant files, which some programs refuse.
      entry->size = feed->about;
      entry->valid = ZIP_STAT_SIZE;
      return static_cast<zip_int64_t>(sizeof(*entry));
    }
    case ZIP_SOURCE_ERROR:
      return zip_error_to_data(&feed->error, data, length);
    case ZIP_SOURCE_FREE:
      delete feed;
      return 0;
    case ZIP_SOURCE_SUPPORTS:
      return zip_source_make_command_bitmap(ZIP_SOURCE_OPEN, ZIP_SOURCE_READ, ZIP_SOURCE_CLOSE, ZIP_SOURCE_STAT,
                                            ZIP_SOURCE_ERROR, ZIP_SOURCE_FREE, -1);
    default:
      zip_error_set(&feed->error, ZIP_ER_OPNOTSUPP, 0);
      return -1;
  }
}

/// Where libzip writes the file, as a source of its own.
struct ZipTarget {
  SpillBuffer buffer;
  zip_error_t error{};

  zip_int64_t fail(int code) {
    zip_error_set(&error, code, 0);
    return -1;
  }
};

zip_int64_t targetCommand(void* state, void* data, zip_uint64_t length, zip_source_cmd_t command) {
  auto* target = static_cast<ZipTarget*>(state);
  switch (command) {
    case ZIP_SOURCE_STAT:
      // There is no file yet.
      zip_error_set(&target->error, ZIP_ER_READ, ENOENT);
      return -1;
    case ZIP_SOURCE_BEGIN_WRITE:
    case ZIP_SOURCE_COMMIT_WRITE:
    case ZIP_SOURCE_ROLLBACK_WRITE:
    case ZIP_SOURCE_REMOVE:
    case ZIP_SOURCE_FREE:
      return 0;
    case ZIP_SOURCE_WRITE:
      if (!target->buffer.write({static_cast<const char*>(data), static_cast<std::size_t>(length)}))
        return target->fail(ZIP_ER_WRITE);
      return static_cast<zip_int64_t>(length);
    case ZIP_SOURCE_TELL_WRITE:
      return static_cast<zip_int64_t>(target->buffer.place());
    case ZIP_SOURCE_SEEK_WRITE: {
      const zip_int64_t place =
          zip_source_seek_compute_offset(target->buffer.place(), target->buffer.size(), data, length, &target->error);
      if (place < 0) return -1;
      target->buffer.seek(static_cast<std::uint64_t>(place));
      return 0;
    }
    case ZIP_SOURCE_ERROR:
      return zip_error_to_data(&target->error, data, length);
    case ZIP_SOURCE_SUPPORTS:
      // Reading is named, though a new file is never read, since libzip takes no other source for a file.
      return zip_source_make_command_bitmap(ZIP_SOURCE_OPEN, ZIP_SOURCE_READ, ZIP_SOURCE_CLOSE, ZIP_SOURCE_STAT,
                                            ZIP_SOURCE_ERROR, ZIP_SOURCE_FREE, ZIP_SOURCE_SEEK, ZIP_SOURCE_TELL,
                                            ZIP_SOURCE_SUPPORTS, ZIP_SOURCE_BEGIN_WRITE, ZIP_SOURCE_COMMIT_WRITE,
                                            ZIP_SOURCE_ROLLBACK_WRITE, ZIP_SOURCE_WRITE, ZIP_SOURCE_SEEK_WRITE,
                                            ZIP_SOURCE_TELL_WRITE, ZIP_SOURCE_REMOVE, -1);
    default:
      return target->fail(ZIP_ER_OPNOTSUPP);
  }
}

/// A zip file under construction.
class ZipWriter {
 public:
  ZipWriter() {
    zip_error_t error;
    zip_error_init(&error);
    zip_source_t* source = zip_source_function_create(&targetCommand, &target_, &error);
    if (source != nullptr) {
      zip_ = zip_open_from_source(source, ZIP_CREATE | ZIP_TRUNCATE, &error);
      if (zip_ == nullptr) zip_source_free(source);
    }
    zip_error_fini(&error);
    if (zip_ == nullptr) cannotWrite("", "メモリが足りません.");
  }
  ZipWriter(const ZipWriter&) = delete;
  ZipWriter& operator=(const ZipWriter&) = delete;
  ~ZipWriter() {
    if (zip_ != nullptr) zip_discard(zip_);
  }

  /// The bytes must live until finish.
  void add(const std::string& name, const std::string& bytes) {
    put(name, zip_source_buffer(zip_, bytes.data(), bytes.size(), 0), true);
  }

  void add(const PackagePart& part) {
    if (part.bytes) return add(part.name, *part.bytes);
    if (part.archive) {
      zip_source_t* raw = zip_source_zip(zip_, part.archive->handle, part.entry, ZIP_FL_COMPRESSED, 0, -1);
      return put(part.name, raw, false);
    }
    if (part.relations) return put(part.name, ownBytes(part.relations->xml()), true);
    auto* feed = new Feed{part.make, part.size, fault_, {}, {}, 0, {}};
    zip_source_t* source = zip_source_function(zip_, &feedCommand, feed);
    if (source == nullptr) delete feed;
    put(part.name, source, !part.name.ends_with(".xlsx"));
  }

  /// Writes all entries; `take` gets the file's bytes piece by piece. `stop` is asked often, and must not throw.
  void finish(const std::function<void(std::string_view)>& take, const StopCheck& stop) {
    const auto asked = [](zip_t*, void* state) { return (*static_cast<const StopCheck*>(state))() ? 1 : 0; };
    if (stop) {
      // Nothing is changed by the check; the library's state is not constant.
      zip_register_cancel_callback_with_state(zip_, asked, nullptr, const_cast<StopCheck*>(&stop));
    }
    if (zip_close(zip_) != 0) {
      if (zip_error_code_zip(zip_get_error(zip_)) == ZIP_ER_CANCELLED)
        throw WorkbookError(WorkbookFault::Stopped, "", "中断しました.");
      if (fault_) std::rethrow_exception(fault_);
      cannotWrite("", zip_strerror(zip_));
    }
    zip_ = nullptr;
    if (!target_.buffer.read(take)) cannotWrite("", "一時ファイルを読めません.");
  }

 private:
  /// A source of bytes that the zip library is to give back.
  zip_source_t* ownBytes(const std::string& bytes) {
    void* copy = std::malloc(bytes.size() + 1);
    if (copy == nullptr) cannotWrite("", "メモリが足りません.");
    std::memcpy(copy, bytes.data(), bytes.size());
    zip_source_t* source = zip_source_buffer(zip_, copy, bytes.size(), 1);
    if (source == nullptr) std::free(copy);
    return source;
  }

  void put(const std::string& name, zip_source_t* source, bool deflate) {
    if (source == nullptr) cannotWrite(name, zip_strerror(zip_));
    const zip_int64_t index = zip_file_add(zip_, name.c_str(), source, ZIP_FL_ENC_UTF_8);
    if (index < 0) {
      zip_source_free(source);
      cannotWrite(name, zip_strerror(zip_));
    }
    const auto entry = static_cast<zip_uint64_t>(index);
    if (deflate) zip_set_file_compression(zip_, entry, ZIP_CM_DEFLATE, kDeflateLevel);
    zip_file_set_dostime(zip_, entry, 0, kDosDate, 0);
  }

  ZipTarget target_;
  zip_t* zip_ = nullptr;
  std::exception_ptr fault_;
};

void writeParts(const std::vector<PackagePart>& parts, const std::string* types,
                const std::function<void(std::string_view)>& take, const StopCheck& stop = {}) {
  ZipWriter writer;
  const bool typesFirst = types != nullptr;
  if (typesFirst) writer.add(std::string(kTypesPart), *types);
  for (const PackagePart& part : parts)
    if (!typesFirst || part.name != kTypesPart) writer.add(part);
  writer.finish(take, stop);
}

}  // namespace

std::string Package::zip() const {
  std::string all;
  const std::string types = data_->types.xml();
  writeParts(data_->parts, data_->typesChanged ? &types : nullptr, [&](std::string_view bytes) { all += bytes; });
  return all;
}

void Package::save(const std::filesystem::path& file, const StopCheck& stop) const {
  const std::string types = data_->types.xml();
  try {
    FileReplacement replacement(file);
    writeParts(
        data_->parts, data_->typesChanged ? &types : nullptr, [&](std::string_view bytes) { replacement.write(bytes); },
        stop);
    replacement.commit();
  } catch (const std::system_error& error) {
    cannotWrite(file.string(), error.code().message().c_str());
  }
}

}  // namespace quillmarden
