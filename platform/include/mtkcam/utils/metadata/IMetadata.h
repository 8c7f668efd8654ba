// MediaTek's metadata container, reduced to what host builds need: the
// static storage pool its header declares. No operation of the container is
// used by the helper; MediaTek values arrive as tags of NvMetadata.
#pragma once

#include <vector>

namespace NSCam {

class IMetadata {
 public:
  class Storage {
   public:
    class ItemTable {
     public:
      // Pools of recycled item tables, shared by every container.
      struct TableAllocator {
        TableAllocator();
        bool flag;
        std::vector<void*> pool0;
        std::vector<void*> pool1;
      };
      // Defined once, by the library that includes this header.
      static TableAllocator sBufferQueue;
    };
  };
};

}  // namespace NSCam
