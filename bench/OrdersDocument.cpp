#include "bench/OrdersDocument.h"

#include <utility>

namespace OvXmlLib16::bench {
namespace {

// The tables hold XML text, entities included, and are written as they stand.
constexpr std::string_view kCompanies[] = {"Oak &amp; Elm Trading", "Fischer &amp; Söhne GmbH", "Northgate Supply Ltd",
                                           "Moreau et Fils",        "Harbour Hardware Inc",     "Van Dijk Logistiek"};
constexpr std::string_view kPeople[] = {"José García",   "Anna Schmidt",  "Peter O'Brien", "Zoë Müller",
                                        "Liam Walker",   "Søren Kjær",    "Maria Rossi",   "Łukasz Nowak",
                                        "Emily Johnson", "Chloé Lefèvre", "David Cohen",   "Νίκος Παππάς",
                                        "Tom de Vries",  "Jürgen Weiß",   "山田太郎"};
constexpr std::string_view kCities[] = {"Utrecht", "Köln",   "Zürich", "Manchester", "Århus",
                                        "Łódź",    "Lisboa", "Αθήνα",  "Toulouse",   "Málaga"};
constexpr std::string_view kCountries[] = {"NL", "DE", "CH", "GB", "DK", "PL", "PT", "GR", "FR", "ES"};
constexpr std::string_view kStatuses[] = {"open", "packed", "shipped", "cancelled"};
constexpr std::string_view kCurrencies[] = {"EUR", "USD", "GBP", "CHF"};
constexpr std::string_view kZones[] = {"Z", "+01:00", "-05:00"};
constexpr std::string_view kMaterials[] = {"Stainless steel", "Oak",    "Brass",    "Aluminium",
                                           "Galvanised",      "Rubber", "Hardened", "Copper"};
constexpr std::string_view kThings[] = {"bracket",          "hinge",  "pipe clamp", "shelf", "washer",
                                        "nuts &amp; bolts", "handle", "cable tray", "valve", "gasket"};
constexpr std::string_view kForeignThings[] = {"Crème brûlée torch", "Fräsmaschinenöl", "Caña de azúcar",
                                               "Ελληνικός καφές",    "緑茶 100 g",      "Śruba ocynkowana",
                                               "Kahvipöytä, mänty",  "𠮷野杉の箸"};
constexpr std::string_view kSentences[] = {"Leave the parcel with the neighbour at number 12.",
                                           "Partial delivery accepted if stock &lt; 10.",
                                           "Refund of 12.50 &#x20AC; agreed by phone.",
                                           "Invoice &amp; delivery note to the head office.",
                                           "Bitte vor der Tür abstellen, Schlüssel beim Hausmeister.",
                                           "Ring twice 🔔, the bell is quiet."};

// Typical lengths, for ending near the wanted size.
constexpr std::size_t kBytesOfSmallOrder = 600;
constexpr std::size_t kBytesOfItem = 190;
constexpr std::size_t kBytesBehindItems = 45;

/// SplitMix64 (Steele, Lea and Flood, "Fast Splittable Pseudorandom Number Generators", 2014). Bounded by remainder
/// because the standard's distributions may differ between libraries.
class Random {
 public:
  explicit Random(std::uint64_t seed) : m_state(seed) {}

  std::uint64_t Between(std::uint64_t low, std::uint64_t high) { return low + Next() % (high - low + 1); }
  bool OneIn(std::uint64_t chances) { return Next() % chances == 0; }

  template <std::size_t N>
  std::string_view Pick(const std::string_view (&table)[N]) {
    return table[static_cast<std::size_t>(Next() % N)];
  }

 private:
  std::uint64_t Next() {
    m_state += 0x9E3779B97F4A7C15U;
    std::uint64_t mixed = m_state;
    mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9U;
    mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBU;
    return mixed ^ (mixed >> 31);
  }

  std::uint64_t m_state;
};

/// Writes one document. Each random number is drawn in a statement of its own: the order in which arguments are
/// evaluated is the compiler's choice and would change the document.
class OrdersWriter {
 public:
  OrdersWriter(std::size_t wantedBytes, std::uint64_t seed) : m_wantedBytes(wantedBytes), m_random(seed) {
    m_out.reserve(wantedBytes + 2 * kBytesOfSmallOrder);
  }

  std::string Write() && {
    m_out += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<orders xmlns=\"urn:example:orders\">\n";
    m_depth = 1;
    WriteHeader();
    do {
      WriteOrder();
    } while (HasRoomFor(kBytesOfSmallOrder));
    Close("orders");
    return std::move(m_out);
  }

 private:
  bool HasRoomFor(std::size_t bytes) const { return m_out.size() + bytes <= m_wantedBytes; }

  void WriteHeader() {
    Open("header");
    Leaf("sender", m_random.Pick(kCompanies));
    Leaf("receiver", m_random.Pick(kCompanies));
    Leaf("created", DateTime(Date()));
    Leaf("sequence", std::to_string(m_random.Between(1, 99'999)));
    Close("header");
  }

  void WriteOrder() {
    StartTag("order");
    Attribute("id", std::to_string(m_random.Between(10'000'000, 99'999'999)));
    Attribute("status", m_random.Pick(kStatuses));
    Attribute("currency", m_random.Pick(kCurrencies));
    EndOfStartTag();
    const std::string date = Date();
    Leaf("date", date);
    Leaf("placed", DateTime(date));
    const std::string_view person = m_random.Pick(kPeople);
    WriteCustomer(person);
    WritePayment(person);
    WriteItems();
    if (m_random.OneIn(4) && HasRoomFor(kBytesOfItem)) WriteNote();
    Close("order");
  }

  void WriteCustomer(std::string_view person) {
    Open("customer");
    Leaf("name", person);
    Leaf("city", m_random.Pick(kCities));
    Leaf("country", m_random.Pick(kCountries));
    Close("customer");
  }

  void WritePayment(std::string_view person) {
    if (m_random.OneIn(6)) return EmptyLeaf("cash");
    if (m_random.OneIn(3)) return WriteInvoice();
    Open("card");
    Leaf("number", std::to_string(m_random.Between(4'000'000'000'000'000, 5'999'999'999'999'999)));
    Leaf("holder", person);
    const std::uint64_t year = m_random.Between(2025, 2029);
    Leaf("expires", std::to_string(year) + '-' + Padded(m_random.Between(1, 12), 2));
    Close("card");
  }

  void WriteInvoice() {
    Open("invoice");
    Leaf("due", Date());
    Leaf("reference", "INV-" + Padded(m_random.Between(1, 999'999), 6));
    Close("invoice");
  }

  void WriteItems() {
    const std::uint64_t count = m_random.Between(1, 7);
    std::uint64_t totalCents = 0;
    for (std::uint64_t line = 1; line <= count; ++line) {
      if (line > 1 && !HasRoomFor(kBytesOfItem + kBytesBehindItems)) break;
      totalCents += WriteItem(line);
    }
    Leaf("total", Decimal(totalCents));
  }

  /// Returns what the line costs, in hundredths of the currency.
  std::uint64_t WriteItem(std::uint64_t line) {
    StartTag("item");
    Attribute("sku", "KX-" + Padded(m_random.Between(1, 99'999), 5));
    Attribute("line", std::to_string(line));
    EndOfStartTag();
    Leaf("description", Description());
    const std::uint64_t quantity = m_random.Between(1, 40);
    Leaf("quantity", std::to_string(quantity));
    const std::uint64_t priceCents = m_random.Between(25, 49'999);
    Leaf("price", Decimal(priceCents));
    const std::uint64_t discountCents = m_random.OneIn(3) ? m_random.Between(1, priceCents) : 0;
    if (discountCents != 0) Leaf("discount", Decimal(discountCents));
    Close("item");
    return quantity * priceCents - discountCents;
  }

  std::string Description() {
    if (m_random.OneIn(9)) return std::string(m_random.Pick(kForeignThings));
    std::string text(m_random.Pick(kMaterials));
    text.append(" ").append(m_random.Pick(kThings));
    if (m_random.OneIn(2)) text += ' ' + std::to_string(m_random.Between(2, 250)) + " mm";
    return text;
  }

  void WriteNote() {
    std::string text(m_random.Pick(kSentences));
    for (std::uint64_t more = m_random.Between(0, 2); more > 0; --more) {
      text += m_random.OneIn(4) ? '\n' : ' ';
      text += m_random.Pick(kSentences);
    }
    Leaf("note", text);
  }

  std::string Date() {
    std::string text = std::to_string(m_random.Between(2022, 2024));
    text += '-' + Padded(m_random.Between(1, 12), 2);
    text += '-' + Padded(m_random.Between(1, 28), 2);
    return text;
  }

  std::string DateTime(std::string date) {
    date += 'T' + Padded(m_random.Between(0, 23), 2);
    date += ':' + Padded(m_random.Between(0, 59), 2);
    date += ':' + Padded(m_random.Between(0, 59), 2);
    if (m_random.OneIn(3)) date += '.' + Padded(m_random.Between(0, 999), 3);
    date += m_random.Pick(kZones);
    return date;
  }

  static std::string Padded(std::uint64_t value, std::size_t width) {
    const std::string digits = std::to_string(value);
    return digits.size() < width ? std::string(width - digits.size(), '0') + digits : digits;
  }

  static std::string Decimal(std::uint64_t cents) { return std::to_string(cents / 100) + '.' + Padded(cents % 100, 2); }

  void StartTag(std::string_view name) { m_out.append(m_depth++, '\t').append("<").append(name); }

  void Attribute(std::string_view name, std::string_view value) {
    m_out.append(" ").append(name).append("=\"").append(value).append("\"");
  }

  void EndOfStartTag() { m_out += ">\n"; }

  void Open(std::string_view name) {
    StartTag(name);
    EndOfStartTag();
  }

  void Close(std::string_view name) { m_out.append(--m_depth, '\t').append("</").append(name).append(">\n"); }

  void EmptyLeaf(std::string_view name) { m_out.append(m_depth, '\t').append("<").append(name).append("/>\n"); }

  void Leaf(std::string_view name, std::string_view text) {
    m_out.append(m_depth, '\t').append("<").append(name).append(">").append(text);
    m_out.append("</").append(name).append(">\n");
  }

  std::size_t m_wantedBytes;
  std::size_t m_depth = 0;
  Random m_random;
  std::string m_out;
};

}  // namespace

std::string MakeOrdersDocument(std::size_t wantedBytes, std::uint64_t seed) {
  return OrdersWriter(wantedBytes, seed).Write();
}

std::uint64_t DocumentChecksum(std::string_view document) noexcept {
  std::uint64_t hash = 0xCBF29CE484222325U;
  for (const char byte : document) hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001B3U;
  return hash;
}

}  // namespace OvXmlLib16::bench
