#include "host/service/SelfSigned.h"

#include "host/support/FileError.h"
#include "host/support/Folders.h"
#include "host/support/WholeFile.h"

#include <VelkCommon/Files/FileUtils.h>

#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/rand.h>
#include <openssl/x509v3.h>

#include <memory>
#include <string>

namespace VelkHost {
namespace {

constexpr long secondsPerDay = 24 * 60 * 60;
constexpr long validDays = 365;
constexpr long renewalDays = 30;
constexpr std::size_t pemBytes = 64 << 10;

struct Free
{
    void operator()(EVP_PKEY* key) const { EVP_PKEY_free(key); }
    void operator()(X509* certificate) const { X509_free(certificate); }
    void operator()(X509_EXTENSION* extension) const { X509_EXTENSION_free(extension); }
    void operator()(BIO* stream) const { BIO_free(stream); }
};

template <typename Object>
using Owned = std::unique_ptr<Object, Free>;

std::string contentOf(BIO* stream)
{
    char* bytes = nullptr;
    const long size = BIO_get_mem_data(stream, &bytes);
    return {bytes, static_cast<std::size_t>(size)};
}

bool addExtension(X509* certificate, int kind, const char* value)
{
    X509V3_CTX context;
    X509V3_set_ctx_nodb(&context);
    X509V3_set_ctx(&context, certificate, certificate, nullptr, nullptr, 0);
    const Owned<X509_EXTENSION> extension(X509V3_EXT_conf_nid(nullptr, &context, kind, value));
    return extension && X509_add_ext(certificate, extension.get(), -1) == 1;
}

/// Null when any of OpenSSL's steps fails.
Owned<X509> makeCertificate(EVP_PKEY* key)
{
    Owned<X509> certificate(X509_new());
    std::uint64_t serial = 0;
    if (!certificate || RAND_bytes(reinterpret_cast<unsigned char*>(&serial), sizeof serial) != 1)
        return nullptr;
    X509* const made = certificate.get();
    X509_NAME* const name = X509_get_subject_name(made);
    const auto* const host = reinterpret_cast<const unsigned char*>("localhost");
    const bool complete = X509_set_version(made, X509_VERSION_3) == 1 &&
                          ASN1_INTEGER_set_uint64(X509_get_serialNumber(made), serial >> 1) == 1 &&
                          X509_gmtime_adj(X509_getm_notBefore(made), -secondsPerDay) != nullptr &&
                          X509_gmtime_adj(X509_getm_notAfter(made), validDays * secondsPerDay) != nullptr &&
                          X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC, host, -1, -1, 0) == 1 &&
                          X509_set_issuer_name(made, name) == 1 && X509_set_pubkey(made, key) == 1 &&
                          addExtension(made, NID_basic_constraints, "critical,CA:TRUE") &&
                          addExtension(made, NID_subject_alt_name, "DNS:localhost,IP:127.0.0.1,IP:::1") &&
                          X509_sign(made, key, EVP_sha256()) > 0;
    return complete ? std::move(certificate) : nullptr;
}

/// Whether the file holds a certificate that need not be renewed yet.
bool isCurrent(const fileString& path)
{
    if (!path.pathExists())
        return false;
    const std::string text = readWhole(path, pemBytes);
    const Owned<BIO> stream(BIO_new_mem_buf(text.data(), static_cast<int>(text.size())));
    const Owned<X509> certificate(PEM_read_bio_X509(stream.get(), nullptr, nullptr, nullptr));
    int days = 0;
    int seconds = 0;
    return certificate && ASN1_TIME_diff(&days, &seconds, nullptr, X509_get0_notAfter(certificate.get())) == 1 &&
           days >= renewalDays;
}

void makePrivateFolder(const fileString& folder)
{
    if (FileUtils::createPrivateDirectory(folder))
        return;
    if (!folder.pathExists())
        throw FileError(folder, "cannot be made; the folder above it must be there, and this user may change it");
    if (!isFolder(folder))
        throw FileError(folder, "is not a folder; name one that is not there yet, and it is made");
    throw FileError(folder,
                    "is open to other users, belongs to another one, or is a link, but the certificate's key must "
                    "stay private; close it (chmod 700), or name a folder that is not there yet");
}

}  // namespace

ServiceCertificate selfSignedCertificate(const fileString& folder)
{
    ServiceCertificate files{folder / U"velk-service.crt", folder / U"velk-service.key"};
    makePrivateFolder(folder);
    if (isCurrent(files.certificate) && files.privateKey.pathExists())
        return files;
    const Owned<EVP_PKEY> key(EVP_EC_gen("P-256"));
    const Owned<X509> certificate = key ? makeCertificate(key.get()) : nullptr;
    const Owned<BIO> keyText(BIO_new(BIO_s_mem()));
    const Owned<BIO> certificateText(BIO_new(BIO_s_mem()));
    if (!certificate || !keyText || !certificateText ||
        PEM_write_bio_PrivateKey(keyText.get(), key.get(), nullptr, nullptr, 0, nullptr, nullptr) != 1 ||
        PEM_write_bio_X509(certificateText.get(), certificate.get()) != 1)
        throw FileError(files.certificate, "cannot be made");
    writeWhole(files.privateKey, contentOf(keyText.get()));
    writeWhole(files.certificate, contentOf(certificateText.get()));
    return files;
}

}  // namespace VelkHost
