#include "fabrics/keyed_mapping.h"

#include <fmt/format.h>
#include <sodium.h>

#include <cstring>
#include <new>
#include <stdexcept>

namespace fabscan {

namespace {

constexpr u_int64_t kDefaultGidPrefix = 0xfe80000000000000;
constexpr u_int32_t kManagementQueueKey = 0x80010000;
constexpr u_int64_t kMacBits = 0xffffffffffff;

// The same secret gives the same key everywhere.
constexpr unsigned char kSalt[crypto_pwhash_SALTBYTES + 1] = "fabscananonymise";

void StartLibrary() {
  if (sodium_init() < 0) throw std::runtime_error("no source of random numbers");
}

}  // namespace

KeyedMapping::KeyedMapping() : key_{} {
  StartLibrary();
  randombytes_buf(key_.data(), key_.size());
}

KeyedMapping::KeyedMapping(std::string_view secret) : key_{} {
  StartLibrary();
  if (crypto_pwhash(key_.data(), key_.size(), secret.data(), secret.size(), kSalt,
                    crypto_pwhash_OPSLIMIT_INTERACTIVE, crypto_pwhash_MEMLIMIT_INTERACTIVE,
                    crypto_pwhash_ALG_ARGON2ID13) != 0) {
    throw std::bad_alloc();  // the only way to fail here
  }
}

KeyedMapping::~KeyedMapping() { sodium_memzero(key_.data(), key_.size()); }

u_int64_t KeyedMapping::hash(char kind, std::string_view bytes) const {
  unsigned char digest[crypto_generichash_BYTES_MIN];
  crypto_generichash_state state;
  crypto_generichash_init(&state, key_.data(), key_.size(), sizeof digest);
  crypto_generichash_update(&state, reinterpret_cast<const unsigned char*>(&kind), 1);
  crypto_generichash_update(&state, reinterpret_cast<const unsigned char*>(bytes.data()),
                            bytes.size());
  crypto_generichash_final(&state, digest, sizeof digest);
  u_int64_t hash = 0;
  for (std::size_t i = 0; i < sizeof hash; ++i) hash = hash << 8U | digest[i];
  return hash;
}

u_int64_t KeyedMapping::hash(char kind, u_int64_t number) const {
  return hash(kind, fmt::format("{:016x}", number));
}

u_int64_t KeyedMapping::Guid(u_int64_t guid) const { return guid == 0 ? 0 : hash('G', guid); }

u_int64_t KeyedMapping::GidHalf(u_int64_t half) const {
  return half == kDefaultGidPrefix ? half : Guid(half);
}

u_int64_t KeyedMapping::MacAddress(u_int64_t address) const {
  return address == 0 ? 0 : hash('M', address) & kMacBits;
}

u_int32_t KeyedMapping::QueueKey(u_int32_t queue_key) const {
  if (queue_key == 0 || queue_key == kManagementQueueKey) return queue_key;
  return static_cast<u_int32_t>(hash('Q', u_int64_t{queue_key}));
}

std::string KeyedMapping::Name(std::string_view name) const {
  return name.empty() ? std::string() : fmt::format("node-{:016x}", hash('N', name));
}

}  // namespace fabscan
