// The mesher's node and element lists.
#include "platform/mesher.h"

CMeshNode* CMeshNodeList::Add(double x, double y, uint8_t flag) {
  CMeshNode& n = nodes_.emplace_back(CMeshNode{x, y, flag, nullptr});
  if (tail_) {
    tail_->next = &n;
  } else {
    head_ = &n;
  }
  tail_ = &n;
  return &n;
}

void CMeshNodeList::RemoveAll() {
  nodes_.clear();
  head_ = tail_ = nullptr;
}

CMeshElement* CMeshElementList::Add(CMeshNode* a, CMeshNode* b, CMeshNode* c) {
  CMeshElement& e = elements_.emplace_back();
  e.corners_[0] = a;
  e.corners_[1] = b;
  e.corners_[2] = c;
  if (tail_) {
    tail_->next_ = &e;
  } else {
    head_ = &e;
  }
  tail_ = &e;
  return &e;
}

void CMeshElementList::RemoveAll() {
  elements_.clear();
  head_ = tail_ = nullptr;
}
