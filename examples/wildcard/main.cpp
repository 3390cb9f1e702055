// Reads any XML file, prints an outline of it, puts a mark on it and writes it: wildcard [file [output]]

#include <ovxmllib/ovxmllib.h>

#include <filesystem>
#include <iostream>
#include <map>

using namespace OvXmlLib16;
using std::filesystem::path;

/// How often a name occurs below one element; elements of the same name make one line of the outline.
using Names = std::map<WString, std::vector<CElement*>>;

/// Prints what is below elements of one name, to a depth that people read.
void PrintOutline(const std::vector<CElement*>& elements, int depth) {
  constexpr int kDeepest = 4;
  if (depth == kDeepest) return;
  Names names;
  for (CElement* element : elements) {
    for (CElement* child : *element->GetChildElements()) names[child->GetName()].push_back(child);
  }
  for (const auto& [name, children] : names) {
    std::cout << std::string(2 * static_cast<std::size_t>(depth), ' ') << ToUtf8(name) << " x " << children.size();
    for (CAttribute* attribute : *children.front()->GetAttributes()) {
      std::cout << ' ' << ToUtf8(attribute->GetName()) << "=\"" << ToUtf8(attribute->GetValue()) << '"';
    }
    std::cout << '\n';
    PrintOutline(children, depth + 1);
  }
}

int CountBelow(CElement& element) {
  int count = 0;
  for (CElement* child : *element.GetChildElements()) count += 1 + CountBelow(*child);
  return count;
}

/// Takes the first two elements of each name below the root and drops the others.
void KeepSome(CElementCol& elements) {
  std::map<WString, int> seen;
  for (int i = 0; i < elements.GetCount();) {
    const bool keeps = ++seen[elements.Item(i)->GetName()] <= 2;
    keeps ? static_cast<void>(++i) : elements.Remove(i);
  }
}

int main(int argc, char** argv) {
  const path source = argc > 1 ? argv[1] : "/usr/share/mime/packages/freedesktop.org.xml";
  const path target = argc > 2 ? argv[2] : "sample.xml";
  CXmlObjectBase::Register(16, 1);
  try {
    CSmartPtr<CElement> root(new CElement(u"unread"));
    root->FromXmlFile(source);
    std::cout << ToUtf8(root->GetName()) << " in namespace \"" << ToUtf8(root->GetNamespace()) << "\", "
              << CountBelow(*root) << " elements below\n";
    PrintOutline({root}, 1);

    KeepSome(*root->GetChildElements());
    root->SetText(u"");
    root->GetAttributes()->Add(u"note", u"a sample, made by the example \"wildcard\"", u"urn:example:notes");
    root->ToXmlFile(target);
    std::cout << "Wrote " << target.string() << ", " << CountBelow(*root) << " elements below\n";

    CSmartPtr<CElement> again(new CElement(u"unread"));
    again->FromXmlFile(target);
    if (CountBelow(*again) != CountBelow(*root)) throw COvException(u"It reads back differently.");
    return 0;
  } catch (const COvException& exception) {
    std::cerr << exception << '\n';
    return 1;
  }
}
