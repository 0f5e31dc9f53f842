"""Contacts pass between the broker and the real khard over one folder, in both directions.

Arguments: the folder of the programs, then unittest's own.
"""

import json
import pathlib

import interchange

# As a phone exports a contact: a folded photo, groups with labels of its own, properties that only it knows.
PHONE_CARD = """BEGIN:VCARD
VERSION:3.0
PRODID:-//Example//Phone 17//EN
UID:phone-1
N:Schmidt;Anna;Maria;;
FN:Anna Maria Schmidt
ORG:Blue\\; Ltd;Roses
TITLE:Gardener
TEL;type=CELL;type=VOICE;type=pref:+49 176 12345
item1.TEL:0221 1
item1.X-ABLabel:Ferienhaus
item2.EMAIL;type=INTERNET:anna@example.com
item2.X-ABLabel:_$!<Home>!$_
item3.ADR;type=WORK:;;Hauptstr. 1;Köln;;50667;Germany
item3.X-ABADR:de
PHOTO;ENCODING=b;TYPE=JPEG:/9j/4AAQSkZJRgABAQAAAQABAAD/2wBDAAgGBgcGBQgHBwcJCQ
 gKDBQNDAsLDBkSEw8UHRofHh0aHBwgJC4nICIsIxwcKDcpLDAxNDQ0Hyc5PTgyPC4zNDL/
X-PHONE-PRIVATE;X-MODE="a:b":kept
NOTE:a secret\\, kept
END:VCARD
""".replace("\n", "\r\n")


class KhardInterchange(interchange.Interchange):
    """Each test has the empty book friends."""

    other = "/usr/bin/khard"
    capability = "contacts"

    def setUp(self):
        super().setUp()
        self.book = self.folder / "contacts/friends"
        self.book.mkdir(parents=True)

    def use_zone(self, zone):
        super().use_zone(zone)
        self.environment["VESK_CONTACTS_DIR"] = str(self.folder / "contacts")
        self.write_config("khard/khard.conf", f"""[addressbooks]
[[friends]]
path = {self.folder}/contacts/friends
[general]
default_action = list
[vcard]
preferred_version = 3.0
""")

    def search(self, query):
        return self.broker("contacts-search", "--query", query)["contacts"]

    def save(self, **request):
        path = self.folder / "request.json"
        path.write_text(json.dumps(request), encoding="utf-8")
        return self.broker("contacts-save", "--request", str(path))["contact"]

    def khard(self, *arguments, text=""):
        return self.run_program(self.other, *arguments, text=text)

    def template(self, yaml):
        path = self.folder / "card.yaml"
        path.write_text(yaml, encoding="utf-8")
        return str(path)

    def new_card(self, yaml):
        self.khard("new", "-a", "friends", "-i", self.template(yaml))

    def only_file(self):
        (path,) = self.book.glob("*.vcf")
        return pathlib.Path(path)

    def test_khard_finds_what_the_broker_saved(self):
        self.save(name="Anna Größe-Schmidt", organization="Blue; Ltd", department="Roses", jobTitle="Head, all",
                  phones=[{"label": "mobile", "value": "+49 176 1"}, {"label": "Boat", "value": "2"}],
                  emails=[{"label": "work", "value": "anna@example.com"}],
                  addresses=[{"label": "home", "street": "Road 1; left", "city": "Köln", "postalCode": "50667",
                              "country": "Germany"}])
        shown = self.khard("show", "anna")
        for part in ("Größe-Schmidt", "Blue; Ltd", "Roses", "Head, all", "+49 176 1", "Boat", "anna@example.com",
                     "Road 1; left", "50667", "Köln", "Germany"):
            self.assertIn(part, shown)

    def test_khard_lists_numbers_and_addresses_with_their_types(self):
        self.save(name="Anna Schmidt", phones=[{"label": "mobile", "value": "1"}, {"label": "home", "value": "2"},
                                               {"label": "Office", "value": "3"}, {"label": "Boat", "value": "4"}],
                  emails=[{"label": "home", "value": "a@example.com"}])
        rows = [line.split("\t") for line in self.khard("phone", "--parsable").splitlines()]
        self.assertEqual(sorted((row[0], row[2]) for row in rows),
                         [("1", "cell"), ("2", "home"), ("3", "work"), ("4", "Boat")])
        self.assertIn("a@example.com\tAnna Schmidt\thome", self.khard("email", "--parsable"))

    def test_khard_sees_what_the_broker_added(self):
        identifier = self.save(name="Anna Schmidt", phones=[{"label": "home", "value": "1"}])["id"]
        self.save(name="x", targetId=identifier, phones=[{"label": "work", "value": "2"}], organization="Green")
        shown = self.khard("show", "anna")
        for part in ("Anna Schmidt", "home", "work", "Green"):
            self.assertIn(part, shown)

    def test_the_broker_finds_what_khard_made(self):
        self.new_card("""First name : Jörg
Last name : Müller
Nickname : Jo
Organisation : Blue; Ltd
Title : Cook, head
Phone :
    cell : "+49 176 12"
    Ferienhaus : "0221 1"
Email :
    home : joerg@example.com
Address :
    work :
        Street : Hauptstr. 1
        Code : "50667"
        City : Köln
        Country : Germany
""")
        for query in ("muller", "17612", "JOERG@", "hauptstr", "jo", "cook, head"):
            self.assertEqual([contact["name"] for contact in self.search(query)], ["Jörg Müller"], query)
        (contact,) = self.search("muller")
        self.assertEqual({(phone["label"], phone["value"]) for phone in contact["phones"]},
                         {("mobile", "+49 176 12"), ("Ferienhaus", "0221 1")})
        self.assertEqual(contact["emails"], [{"label": "home", "value": "joerg@example.com"}])
        self.assertEqual(contact["organization"], "Blue; Ltd")
        self.assertEqual(contact["addresses"][0]["city"], "Köln")

    def test_the_broker_leaves_the_other_bytes_of_a_phones_card(self):
        (self.book / "phone.vcf").write_bytes(PHONE_CARD.encode())
        (contact,) = self.search("anna maria")
        self.assertEqual([(phone["label"], phone["value"]) for phone in contact["phones"]],
                         [("mobile", "+49 176 12345"), ("Ferienhaus", "0221 1")])
        self.assertEqual(contact["emails"], [{"label": "home", "value": "anna@example.com"}])
        self.assertEqual((contact["organization"], contact["department"]), ("Blue; Ltd", "Roses"))
        self.assertEqual(contact["addresses"][0]["formattedAddress"], "Hauptstr. 1\n50667 Köln\nGermany")
        self.save(name="x", targetId="phone-1", emails=[{"label": "work", "value": "b@example.com"}])
        lines = (self.book / "phone.vcf").read_bytes().decode().split("\r\n")
        added = [line for line in lines if "b@example.com" in line]
        self.assertEqual(len(added), 1)
        lines.remove(added[0])
        self.assertEqual("\r\n".join(lines), PHONE_CARD)
        self.assertIn("b@example.com", self.khard("email", "--parsable"))

    def test_each_can_change_what_the_other_changed(self):
        self.new_card("First name : Anna\nLast name : Schmidt\nPhone :\n    home : \"1\"\n")
        (contact,) = self.search("anna")
        self.save(name="x", targetId=contact["id"], phones=[{"label": "Boat", "value": "2"}])
        changed = self.template("First name : Anna\nLast name : Schmidt\nTitle : Cook\n"
                                "Phone :\n    home : \"1\"\n    Boat : \"2\"\n")
        self.khard("modify", "anna", "-i", changed, text="y\n")
        self.save(name="x", targetId=contact["id"], phones=[{"label": "work", "value": "3"}])
        (contact,) = self.search("anna")
        self.assertEqual({(phone["label"], phone["value"]) for phone in contact["phones"]},
                         {("home", "1"), ("Boat", "2"), ("work", "3")})
        self.assertEqual(contact["jobTitle"], "Cook")
        self.assertIn("Cook", self.khard("show", "anna"))
        self.only_file()


if __name__ == "__main__":
    interchange.main()
