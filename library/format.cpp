#include "library/format.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>

namespace vantrel::library {
namespace {

void PutLE(std::string& out, uint32_t v, int bytes) {
    for (int i = 0; i < bytes; ++i) out.push_back(static_cast<char>((v >> (8 * i)) & 0xFF));
}

void PutString(std::string& out, std::string_view s) {
    size_t n = std::min(s.size(), kMaxStringBytes);
    PutLE(out, static_cast<uint32_t>(n), 2);
    out.append(s.data(), n);
}

}  // namespace

void EncodeHeader(const LibraryHeader& h, std::string& out) {
    PutLE(out, static_cast<uint16_t>(h.version), 2);
    PutLE(out, static_cast<uint16_t>(h.flag), 2);
    PutString(out, h.book);
    PutLE(out, static_cast<uint32_t>(h.RecCount), 4);
    PutLE(out, static_cast<uint32_t>(h.MinIndex), 4);
    PutLE(out, static_cast<uint32_t>(h.MaxIndex), 4);
    PutString(out, h.LibRemarks);
}

void EncodeRecord(const LibraryNodeRecord& r, std::string& out) {
    PutLE(out, static_cast<uint32_t>(r.index), 4);
    PutLE(out, static_cast<uint32_t>(r.parent), 4);
    PutLE(out, r.new_branch ? 0xFFFFu : 0u, 2);
    PutString(out, r.description);
    PutString(out, r.remarks);
    std::string_view layout = r.BoardLayout;
    layout = layout.substr(0, std::min(layout.size(), kLayoutBytes));
    out.append(layout);
    out.append(kLayoutBytes - layout.size(), ' ');
}

bool LibraryReader::Open(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return false;
    in.seekg(0, std::ios::end);
    std::streamoff size = in.tellg();
    if (size < 0) return false;
    in.seekg(0, std::ios::beg);
    std::string bytes(static_cast<size_t>(size), '\0');
    if (size > 0 && !in.read(bytes.data(), size)) return false;
    OpenBytes(std::move(bytes));
    return true;
}

void LibraryReader::OpenBytes(std::string bytes) {
    data_ = std::move(bytes);
    pos_ = 0;
}

bool LibraryReader::Take(void* dst, size_t n) {
    if (data_.size() - pos_ < n) return false;
    std::memcpy(dst, data_.data() + pos_, n);
    pos_ += n;
    return true;
}

bool LibraryReader::TakeString(std::string& s) {
    if (data_.size() - pos_ < 2) return false;
    size_t n = static_cast<unsigned char>(data_[pos_]) | (static_cast<unsigned char>(data_[pos_ + 1]) << 8);
    if (data_.size() - pos_ - 2 < n) return false;
    s.assign(data_, pos_ + 2, n);
    pos_ += 2 + n;
    return true;
}

namespace {
template <typename T>
T FromLE(const unsigned char* p) {
    uint32_t v = 0;
    for (size_t i = 0; i < sizeof(T); ++i) v |= static_cast<uint32_t>(p[i]) << (8 * i);
    return static_cast<T>(v);
}
}  // namespace

bool LibraryReader::ReadHeader(LibraryHeader& h) {
    h = LibraryHeader{};
    h.flag = 0;
    unsigned char b[4];
    if (!Take(b, 2)) return false;
    h.version = FromLE<int16_t>(b);
    if (!Take(b, 2)) return false;
    h.flag = FromLE<int16_t>(b);
    if (!TakeString(h.book)) return false;
    if (!Take(b, 4)) return false;
    h.RecCount = FromLE<int32_t>(b);
    if (!Take(b, 4)) return false;
    h.MinIndex = FromLE<int32_t>(b);
    if (!Take(b, 4)) return false;
    h.MaxIndex = FromLE<int32_t>(b);
    return TakeString(h.LibRemarks);
}

bool LibraryReader::ReadRecord(LibraryNodeRecord& r) {
    size_t start = pos_;
    unsigned char b[4];
    bool ok = Take(b, 4);
    if (ok) r.index = FromLE<int32_t>(b);
    ok = ok && Take(b, 4);
    if (ok) r.parent = FromLE<int32_t>(b);
    ok = ok && Take(b, 2);
    if (ok) r.new_branch = FromLE<int16_t>(b) != 0;
    ok = ok && TakeString(r.description) && TakeString(r.remarks);
    if (ok && data_.size() - pos_ >= kLayoutBytes) {
        r.BoardLayout.assign(data_, pos_, kLayoutBytes);
        pos_ += kLayoutBytes;
        return true;
    }
    // A partial record at the end of the file is no record.
    pos_ = start;
    return false;
}

LibraryWriter::~LibraryWriter() {
    if (file_) std::fclose(file_);
}

bool LibraryWriter::Open(const std::string& path) {
    if (file_) Close();
    failed_ = false;
    buffer_.clear();
    file_ = std::fopen(path.c_str(), "wb");
    return file_ != nullptr;
}

bool LibraryWriter::Flush() {
    if (!file_) return false;
    if (!buffer_.empty() && std::fwrite(buffer_.data(), 1, buffer_.size(), file_) != buffer_.size()) failed_ = true;
    buffer_.clear();
    return !failed_;
}

bool LibraryWriter::WriteHeader(const LibraryHeader& header) {
    if (!file_) return false;
    EncodeHeader(header, buffer_);
    return Flush();
}

bool LibraryWriter::WriteRecord(const LibraryNodeRecord& record) {
    if (!file_) return false;
    EncodeRecord(record, buffer_);
    if (buffer_.size() >= (1u << 16)) return Flush();
    return !failed_;
}

bool LibraryWriter::Close() {
    if (!file_) return false;
    bool ok = Flush();
    if (std::fclose(file_) != 0) ok = false;
    file_ = nullptr;
    return ok;
}

}  // namespace vantrel::library
