#pragma once

#include <CoreFoundation/CoreFoundation.h>

CF_ASSUME_NONNULL_BEGIN
CF_EXTERN_C_BEGIN

typedef FourCharCode DescType;
typedef FourCharCode AEEventClass;
typedef FourCharCode AEEventID;
typedef struct OpaqueAEDataStorageType* AEDataStorageType;
typedef AEDataStorageType _Nonnull* AEDataStorage;

typedef struct AEDesc {
    DescType descriptorType;
    AEDataStorage _Nullable dataHandle;
} AEDesc;
typedef AEDesc AEAddressDesc;

enum {
    kAECoreSuite = 'core',
    kAEGetData = 'getd',
    typeAEList = 'list',
};

enum {
    noErr = 0,
    procNotFound = -600,
    errAEEventNotPermitted = -1743,
    errAEEventWouldRequireUserConsent = -1744,
};

OSStatus AEDeterminePermissionToAutomateTarget(const AEAddressDesc* _Nullable target, AEEventClass eventClass,
                                               AEEventID eventID, Boolean askUserIfNeeded);

CF_EXTERN_C_END
CF_ASSUME_NONNULL_END
