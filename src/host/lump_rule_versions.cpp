// The record versions of the host's fluid lumping rules. The host's file format looks these
// members up by their names; nothing else of the classes exists here.

class PVTEOSLUMPRULE {
 public:
  int version();
};
class PVTEOSLUMPRULEFOLDER {
 public:
  int version();
};
class PVTEOSLUMPRULE_COMPONENT {
 public:
  int version();
};
class PVTEOSLUMPRULE_COMPONENT_ADDITION {
 public:
  int version();
};

int PVTEOSLUMPRULE::version() { return 3; }
int PVTEOSLUMPRULEFOLDER::version() { return 2; }
int PVTEOSLUMPRULE_COMPONENT::version() { return 1; }
int PVTEOSLUMPRULE_COMPONENT_ADDITION::version() { return 1; }
