#include "support/ScriptedServer.h"

#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>

#include <algorithm>
#include <atomic>
#include <stdexcept>

namespace test {
namespace {

using Key = std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)>;
using X509Certificate = std::unique_ptr<X509, decltype(&X509_free)>;

constexpr long secondsPerDay = 24L * 60 * 60;

void need(bool holds)
{
    if (!holds)
        throw std::runtime_error("OpenSSL cannot make a certificate");
}

Key newKey()
{
    Key key(EVP_EC_gen("P-256"), &EVP_PKEY_free);
    need(key != nullptr);
    return key;
}

template <typename Write>
std::string pem(Write write)
{
    const std::unique_ptr<BIO, decltype(&BIO_free)> out(BIO_new(BIO_s_mem()), &BIO_free);
    need(out != nullptr && write(out.get()) == 1);
    char* bytes = nullptr;
    const long size = BIO_get_mem_data(out.get(), &bytes);
    return {bytes, static_cast<std::size_t>(size)};
}

std::string pemOf(X509* certificate)
{
    return pem([&](BIO* out) { return PEM_write_bio_X509(out, certificate); });
}

void extend(X509* certificate, X509* issuer, int kind, const std::string& value)
{
    X509V3_CTX context;
    X509V3_set_ctx_nodb(&context);
    X509V3_set_ctx(&context, issuer, certificate, nullptr, nullptr, 0);
    const std::unique_ptr<X509_EXTENSION, decltype(&X509_EXTENSION_free)> extension(
        X509V3_EXT_conf_nid(nullptr, &context, kind, value.c_str()), &X509_EXTENSION_free);
    need(extension != nullptr && X509_add_ext(certificate, extension.get(), -1) == 1);
}

// Each authority needs a different name, or the client would take it for another one with a wrong signature.
std::string authorityName()
{
    static std::atomic<int> number = 0;
    return "Velk test authority " + std::to_string(++number);
}

X509Certificate newCertificate(const std::string& name, EVP_PKEY* key, int daysLeft)
{
    static std::atomic<long> serial = 0;
    X509Certificate certificate(X509_new(), &X509_free);
    need(certificate != nullptr);
    X509_set_version(certificate.get(), 2);
    ASN1_INTEGER_set(X509_get_serialNumber(certificate.get()), ++serial);
    X509_gmtime_adj(X509_getm_notBefore(certificate.get()), (std::min(daysLeft, 0) - 1) * secondsPerDay);
    X509_gmtime_adj(X509_getm_notAfter(certificate.get()), daysLeft * secondsPerDay);
    X509_set_pubkey(certificate.get(), key);
    X509_NAME_add_entry_by_txt(X509_get_subject_name(certificate.get()), "CN", MBSTRING_ASC,
                               reinterpret_cast<const unsigned char*>(name.c_str()), -1, -1, 0);
    return certificate;
}

bool isAddress(const std::string& host)
{
    return host.find_first_not_of("0123456789.") == std::string::npos;
}

}  // namespace

struct TestAuthority::Keys
{
    Key key = newKey();
    X509Certificate certificate = newCertificate(authorityName(), key.get(), 1);
};

TestAuthority::TestAuthority() : keys_(std::make_unique<Keys>())
{
    X509* const own = keys_->certificate.get();
    X509_set_issuer_name(own, X509_get_subject_name(own));
    extend(own, own, NID_basic_constraints, "critical,CA:TRUE");
    extend(own, own, NID_key_usage, "critical,keyCertSign,cRLSign");
    extend(own, own, NID_subject_key_identifier, "hash");
    need(X509_sign(own, keys_->key.get(), EVP_sha256()) > 0);
}

TestAuthority::~TestAuthority() = default;

std::string TestAuthority::certificate() const
{
    return pemOf(keys_->certificate.get());
}

Certificate TestAuthority::issue(const std::string& host, int daysLeft) const
{
    const Key key = newKey();
    const X509Certificate certificate = newCertificate(host, key.get(), daysLeft);
    X509* const issuer = keys_->certificate.get();
    X509_set_issuer_name(certificate.get(), X509_get_subject_name(issuer));
    // Windows' own TLS looks for an address among the names.
    extend(certificate.get(), issuer, NID_subject_alt_name,
           (isAddress(host) ? "IP:" + host + "," : "") + "DNS:" + host);
    need(X509_sign(certificate.get(), keys_->key.get(), EVP_sha256()) > 0);
    return {pemOf(certificate.get()), pem([&](BIO* out) {
                return PEM_write_bio_PrivateKey(out, key.get(), nullptr, nullptr, 0, nullptr, nullptr);
            })};
}

}  // namespace test
