// XML parts of a document as trees, read and printed so that nothing is lost that is not changed.
//
// A *raw* node is a piece of XML that is text already. It is printed as it is and can't be looked into:
// finished rows, forms and pictures are kept so, since as trees thousands of them would take ten times the
// memory.
#pragma once

#include <tinyxml2.h>

#include <functional>
#include <string>
#include <string_view>

using XmlElement = tinyxml2::XMLElement;
using XmlNode = tinyxml2::XMLNode;

// Throws COoxmlError that names the part. Document types, and with them entities of the file's own, are
// refused.
void ParseXml(tinyxml2::XMLDocument& document, std::string_view bytes, const std::string& partName);
std::string PrintXml(const XmlNode& node);

bool Is(const XmlNode* node, const char* name);
// Empty if the element hasn't it, or is null.
std::string Attribute(const XmlElement* element, const char* name);
// The first child element of that name; null if there is none, or no element at all.
XmlElement* Child(XmlNode* element, const char* name);
// The innermost of that name around the node.
XmlElement* Ancestor(XmlNode* node, const char* name);
// The next in document order within `root`; null at the end.
XmlNode* NextNode(XmlNode* node, const XmlNode* root);
// The same without what is inside the node.
XmlNode* NextNodeBehind(XmlNode* node, const XmlNode* root);
void EachElement(XmlNode* root, const std::function<void(XmlElement*)>& visit);
void Remove(XmlNode* node);
// Before all other children with `before` null.
XmlNode* InsertBehind(XmlNode* parent, XmlNode* before, XmlNode* added);

XmlNode* NewRaw(tinyxml2::XMLDocument* document, const std::string& xml);
bool IsRaw(const XmlNode* node);
// Puts a raw node into the element's place. The element and all in it is gone.
void MakeRaw(XmlElement* element);
