#pragma once

#import <Contacts/CNContact.h>
#import <Contacts/CNContactFetchRequest.h>
#import <Contacts/CNContactStore.h>
#import <Contacts/CNLabeledValue.h>
#import <Contacts/CNMutableContact.h>
#import <Contacts/CNPhoneNumber.h>
#import <Contacts/CNPostalAddress.h>
#import <Contacts/CNPostalAddressFormatter.h>
#import <Contacts/CNSaveRequest.h>
#import <Foundation/Foundation.h>
