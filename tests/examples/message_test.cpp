// SPDX-License-Identifier: MIT
// Tests the parser of kernel messages with hand-made datagrams.
extern "C" {
#include "message.h"
}

#include <arpa/inet.h>
#include <linux/if_addr.h>
#include <linux/if_link.h>
#include <linux/rtnetlink.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

constexpr unsigned kUpAndRunning = IFF_UP | IFF_RUNNING;

// Builds a datagram in the machine's byte order, as the kernel does.
class Datagram {
 public:
  Datagram& begin(unsigned type, unsigned flags = 0) {
    start_ = bytes_.size();
    nlmsghdr head{};
    head.nlmsg_type = static_cast<__u16>(type);
    head.nlmsg_flags = static_cast<__u16>(flags);
    head.nlmsg_seq = 77;
    head.nlmsg_pid = 4242;
    return add(head);
  }

  template <typename T>
  Datagram& add(const T& value) {
    append(&value, sizeof value);
    return *this;
  }

  Datagram& attribute(unsigned type, const void* data, size_t size) {
    rtattr head{};
    head.rta_type = static_cast<unsigned short>(type);
    head.rta_len = static_cast<unsigned short>(sizeof head + size);
    append(&head, sizeof head);
    append(data, size);
    return *this;
  }

  Datagram& attribute(unsigned type, const std::string& text) {
    return attribute(type, text.c_str(), text.size() + 1);
  }

  // Writes the length of the last message to its header.
  Datagram& end() {
    const auto length = static_cast<__u32>(bytes_.size() - start_);
    std::memcpy(&bytes_[start_], &length, sizeof length);
    return *this;
  }

  std::vector<unsigned char>& bytes() { return bytes_; }

 private:
  void append(const void* data, size_t size) {
    const auto* first = static_cast<const unsigned char*>(data);
    bytes_.insert(bytes_.end(), first, first + size);
    bytes_.resize(NLMSG_ALIGN(bytes_.size()));
  }

  std::vector<unsigned char> bytes_;
  size_t start_ = 0;
};

ifinfomsg linkInfo(int index, unsigned flags = 0, unsigned char family = AF_UNSPEC) {
  ifinfomsg info{};
  info.ifi_family = family;
  info.ifi_index = index;
  info.ifi_flags = flags;
  return info;
}

ifaddrmsg addressInfo(unsigned index, unsigned char family = AF_INET) {
  ifaddrmsg info{};
  info.ifa_family = family;
  info.ifa_index = index;
  return info;
}

Datagram linkNamed(const std::string& name, unsigned flags = 0) {
  Datagram datagram;
  datagram.begin(RTM_NEWLINK).add(linkInfo(3, flags)).attribute(IFLA_IFNAME, name).end();
  return datagram;
}

Datagram localAddress(const char* text, unsigned type = RTM_NEWADDR) {
  in_addr address{};
  inet_pton(AF_INET, text, &address);
  Datagram datagram;
  datagram.begin(type).add(addressInfo(5)).attribute(IFA_LOCAL, &address, sizeof address).end();
  return datagram;
}

Datagram ending(unsigned type, int error) {
  Datagram datagram;
  datagram.begin(type).add(error).end();
  return datagram;
}

class MessageTest : public testing::Test {
 protected:
  void read(Datagram datagram) {
    bytes_ = std::move(datagram.bytes());
    reader_ = {bytes_.data(), bytes_.size()};
  }

  message_kind next() { return message_next(&reader_, &message_); }

  message_kind only(Datagram datagram) {
    read(std::move(datagram));
    const message_kind kind = next();
    message behind;
    EXPECT_EQ(message_next(&reader_, &behind), MESSAGE_END);
    return kind;
  }

  std::vector<unsigned char> bytes_;
  message_reader reader_{};
  message message_{};
};

TEST_F(MessageTest, EmptyDatagramEndsAtOnce) {
  read(Datagram());
  EXPECT_EQ(next(), MESSAGE_END);
}

TEST_F(MessageTest, LinkHasIndexNameMacAndMtu) {
  const unsigned char mac[] = {0x02, 0x00, 0xab, 0xff, 0x10, 0x01};
  const __u32 mtu = 1400;
  Datagram datagram;
  datagram.begin(RTM_NEWLINK).add(linkInfo(7)).attribute(IFLA_IFNAME, "eth0");
  datagram.attribute(IFLA_ADDRESS, mac, sizeof mac).attribute(IFLA_MTU, &mtu, sizeof mtu).end();
  ASSERT_EQ(only(datagram), MESSAGE_LINK);
  EXPECT_EQ(message_.link.index, 7);
  EXPECT_STREQ(message_.link.name, "eth0");
  EXPECT_STREQ(message_.link.mac, "02:00:ab:ff:10:01");
  EXPECT_EQ(message_.link.mtu, 1400U);
}

TEST_F(MessageTest, LinkIsUpOnlyIfEnabledAndRunning) {
  for (const unsigned flags : {0U, unsigned{IFF_UP}, unsigned{IFF_RUNNING}, kUpAndRunning}) {
    ASSERT_EQ(only(linkNamed("eth0", flags)), MESSAGE_LINK);
    EXPECT_EQ(message_.link.up, flags == kUpAndRunning) << flags;
  }
}

TEST_F(MessageTest, HardwareAddressOfAnotherLengthIsIgnored) {
  const unsigned char tunnel[] = {10, 0, 0, 1};
  Datagram datagram;
  datagram.begin(RTM_NEWLINK).add(linkInfo(7)).attribute(IFLA_IFNAME, "tun0");
  datagram.attribute(IFLA_ADDRESS, tunnel, sizeof tunnel).end();
  ASSERT_EQ(only(datagram), MESSAGE_LINK);
  EXPECT_STREQ(message_.link.mac, "");
}

TEST_F(MessageTest, AttributesAreFoundWhateverTheirFlagBits) {
  Datagram datagram;
  datagram.begin(RTM_NEWLINK).add(linkInfo(7)).attribute(IFLA_IFNAME | NLA_F_NET_BYTEORDER, "eth0").end();
  ASSERT_EQ(only(datagram), MESSAGE_LINK);
  EXPECT_STREQ(message_.link.name, "eth0");
}

TEST_F(MessageTest, LongestNameFits) {
  ASSERT_EQ(only(linkNamed("abcdefghijklmno")), MESSAGE_LINK);
  EXPECT_STREQ(message_.link.name, "abcdefghijklmno");
}

TEST_F(MessageTest, NameThatIsTooLongIsMalformed) {
  EXPECT_EQ(only(linkNamed("abcdefghijklmnop")), MESSAGE_MALFORMED);
}

TEST_F(MessageTest, EmptyNameIsMalformed) {
  EXPECT_EQ(only(linkNamed("")), MESSAGE_MALFORMED);
}

TEST_F(MessageTest, NameWithoutNulIsMalformed) {
  Datagram datagram;
  datagram.begin(RTM_NEWLINK).add(linkInfo(7)).attribute(IFLA_IFNAME, "eth0", 4).end();
  EXPECT_EQ(only(datagram), MESSAGE_MALFORMED);
}

TEST_F(MessageTest, ShortMtuIsMalformed) {
  Datagram datagram;
  datagram.begin(RTM_NEWLINK).add(linkInfo(7)).attribute(IFLA_MTU, "\1\2", 2).end();
  EXPECT_EQ(only(datagram), MESSAGE_MALFORMED);
}

TEST_F(MessageTest, LinkWithoutANameIsIgnored) {
  Datagram datagram;
  datagram.begin(RTM_NEWLINK).add(linkInfo(7)).attribute(IFLA_WIRELESS, "news").end();
  EXPECT_EQ(only(datagram), MESSAGE_OTHER);
}

TEST_F(MessageTest, PortThatLeavesItsBridgeIsNotGone) {
  Datagram datagram;
  datagram.begin(RTM_DELLINK).add(linkInfo(7, 0, AF_BRIDGE)).attribute(IFLA_IFNAME, "eth0").end();
  EXPECT_EQ(only(datagram), MESSAGE_OTHER);
}

TEST_F(MessageTest, VanishedLinkNeedsNoName) {
  Datagram datagram;
  datagram.begin(RTM_DELLINK).add(linkInfo(9)).end();
  ASSERT_EQ(only(datagram), MESSAGE_LINK_GONE);
  EXPECT_EQ(message_.link.index, 9);
}

TEST_F(MessageTest, LinkWithoutAnIndexIsMalformed) {
  for (const int index : {0, -1}) {
    Datagram datagram;
    datagram.begin(RTM_NEWLINK).add(linkInfo(index)).attribute(IFLA_IFNAME, "eth0").end();
    EXPECT_EQ(only(datagram), MESSAGE_MALFORMED) << index;
  }
}

TEST_F(MessageTest, AddressIsTheLocalOneNotThePeer) {
  const unsigned char peer[] = {10, 0, 0, 2};
  const unsigned char local[] = {10, 0, 0, 1};
  Datagram datagram;
  datagram.begin(RTM_NEWADDR).add(addressInfo(5)).attribute(IFA_ADDRESS, peer, sizeof peer);
  datagram.attribute(IFA_LOCAL, local, sizeof local).end();
  ASSERT_EQ(only(datagram), MESSAGE_ADDRESS);
  EXPECT_EQ(message_.link.index, 5);
  EXPECT_STREQ(message_.address, "10.0.0.1");
}

TEST_F(MessageTest, RemovedAddressIsReported) {
  ASSERT_EQ(only(localAddress("192.168.100.200", RTM_DELADDR)), MESSAGE_ADDRESS_GONE);
  EXPECT_EQ(message_.link.index, 5);
  EXPECT_STREQ(message_.address, "192.168.100.200");
}

TEST_F(MessageTest, AddressOfAnotherFamilyIsIgnored) {
  Datagram datagram;
  datagram.begin(RTM_NEWADDR).add(addressInfo(5, AF_INET6)).end();
  EXPECT_EQ(only(datagram), MESSAGE_OTHER);
}

TEST_F(MessageTest, AddressMessageWithoutAnAddressIsMalformed) {
  Datagram datagram;
  datagram.begin(RTM_NEWADDR).add(addressInfo(5)).end();
  EXPECT_EQ(only(datagram), MESSAGE_MALFORMED);
}

TEST_F(MessageTest, ShortAddressIsMalformed) {
  Datagram datagram;
  datagram.begin(RTM_NEWADDR).add(addressInfo(5)).attribute(IFA_LOCAL, "\12\0", 2).end();
  EXPECT_EQ(only(datagram), MESSAGE_MALFORMED);
}

TEST_F(MessageTest, AddressOfAnImpossibleIndexIsMalformed) {
  for (const unsigned index : {0U, 0x80000000U}) {
    const unsigned char local[] = {10, 0, 0, 1};
    Datagram datagram;
    datagram.begin(RTM_NEWADDR).add(addressInfo(index)).attribute(IFA_LOCAL, local, sizeof local).end();
    EXPECT_EQ(only(datagram), MESSAGE_MALFORMED) << index;
  }
}

TEST_F(MessageTest, EndOfADumpHasErrorCodeZero) {
  ASSERT_EQ(only(ending(NLMSG_DONE, 0)), MESSAGE_DONE);
  EXPECT_EQ(message_.error, 0);
}

TEST_F(MessageTest, AbortedDumpAndErrorHaveTheirErrorCode) {
  for (const unsigned type : {unsigned{NLMSG_DONE}, unsigned{NLMSG_ERROR}}) {
    ASSERT_EQ(only(ending(type, -EBUSY)), MESSAGE_DONE) << type;
    EXPECT_EQ(message_.error, EBUSY) << type;
  }
}

TEST_F(MessageTest, ErrorThatIsNotAnErrnoValueIsMalformed) {
  EXPECT_EQ(only(ending(NLMSG_ERROR, 1)), MESSAGE_MALFORMED);
  EXPECT_EQ(only(ending(NLMSG_ERROR, INT32_MIN)), MESSAGE_MALFORMED);
}

TEST_F(MessageTest, EndWithoutAnErrorCodeIsMalformed) {
  Datagram datagram;
  datagram.begin(NLMSG_DONE).end();
  EXPECT_EQ(only(datagram), MESSAGE_MALFORMED);
}

TEST_F(MessageTest, OtherTypesAreIgnored) {
  Datagram datagram;
  datagram.begin(RTM_NEWROUTE).end();
  EXPECT_EQ(only(datagram), MESSAGE_OTHER);
}

TEST_F(MessageTest, HeaderHasPortSequenceAndInterruption) {
  for (const unsigned flags : {0U, unsigned{NLM_F_DUMP_INTR}}) {
    Datagram datagram;
    datagram.begin(RTM_NEWROUTE, flags).end();
    only(datagram);
    EXPECT_EQ(message_.port, 4242U);
    EXPECT_EQ(message_.sequence, 77U);
    EXPECT_EQ(message_.interrupted, flags != 0);
  }
}

TEST_F(MessageTest, SeveralMessagesComeInOrder) {
  Datagram datagram;
  for (const int index : {1, 2, 3}) {
    datagram.begin(RTM_NEWLINK)
        .add(linkInfo(index))
        .attribute(IFLA_IFNAME, "l" + std::to_string(index))
        .end();
  }
  read(datagram);
  for (const int index : {1, 2, 3}) {
    ASSERT_EQ(next(), MESSAGE_LINK);
    EXPECT_EQ(message_.link.index, index);
  }
  EXPECT_EQ(next(), MESSAGE_END);
}

TEST_F(MessageTest, NextMessageStartsEmpty) {
  Datagram datagram = linkNamed("eth0", kUpAndRunning);
  datagram.begin(RTM_DELLINK).add(linkInfo(4)).end();
  read(datagram);
  next();
  ASSERT_EQ(next(), MESSAGE_LINK_GONE);
  EXPECT_STREQ(message_.link.name, "");
  EXPECT_FALSE(message_.link.up);
}

TEST_F(MessageTest, MalformedMessageDoesNotHideTheNext) {
  Datagram datagram = linkNamed("");
  datagram.begin(RTM_DELLINK).add(linkInfo(4)).end();
  read(datagram);
  EXPECT_EQ(next(), MESSAGE_MALFORMED);
  EXPECT_EQ(next(), MESSAGE_LINK_GONE);
}

TEST_F(MessageTest, MessageLongerThanTheDatagramEndsParsing) {
  Datagram datagram = linkNamed("eth0");
  nlmsghdr head{};
  std::memcpy(&head, datagram.bytes().data(), sizeof head);
  for (const __u32 length : {__u32{0}, __u32{15}, head.nlmsg_len + 1, ~__u32{0}}) {
    std::memcpy(datagram.bytes().data(), &length, sizeof length);
    EXPECT_EQ(only(datagram), MESSAGE_MALFORMED) << length;
  }
}

TEST_F(MessageTest, AttributeBeyondItsMessageIsMalformed) {
  for (const __u16 length : std::initializer_list<__u16>{0, 3, 13, 0xffff}) {
    Datagram datagram;
    datagram.begin(RTM_NEWLINK).add(linkInfo(7)).attribute(IFLA_IFNAME, "eth0").end();
    std::memcpy(&datagram.bytes()[sizeof(nlmsghdr) + sizeof(ifinfomsg)], &length, sizeof length);
    EXPECT_EQ(only(datagram), MESSAGE_MALFORMED) << length;
  }
}

// Each prefix is a separate heap block, so the sanitizer detects a read past its end.
TEST_F(MessageTest, EveryTruncationIsMalformed) {
  Datagram whole = localAddress("10.0.0.1");
  for (size_t size = 1; size < whole.bytes().size(); ++size) {
    Datagram cut;
    cut.bytes().assign(whole.bytes().begin(), whole.bytes().begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_EQ(only(cut), MESSAGE_MALFORMED) << size;
  }
}

TEST_F(MessageTest, EveryShortenedMessageIsMalformed) {
  Datagram whole = localAddress("10.0.0.1");
  for (size_t size = sizeof(nlmsghdr); size < whole.bytes().size(); ++size) {
    Datagram cut;
    cut.bytes().assign(whole.bytes().begin(), whole.bytes().begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_EQ(only(cut.end()), MESSAGE_MALFORMED) << size;
  }
}

TEST_F(MessageTest, AnyAlignmentIsAccepted) {
  Datagram datagram = linkNamed("eth0");
  for (size_t offset = 0; offset < 4; ++offset) {
    std::vector<unsigned char> moved(datagram.bytes().size() + offset);
    std::memcpy(&moved[offset], datagram.bytes().data(), datagram.bytes().size());
    message_reader reader{&moved[offset], datagram.bytes().size()};
    ASSERT_EQ(message_next(&reader, &message_), MESSAGE_LINK);
    EXPECT_STREQ(message_.link.name, "eth0");
  }
}

}  // namespace
