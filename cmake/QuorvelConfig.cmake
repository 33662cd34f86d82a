# Package configuration of Quorvel: defines the imported target Quorvel::Quorvel.
include("${CMAKE_CURRENT_LIST_DIR}/QuorvelTargets.cmake")
