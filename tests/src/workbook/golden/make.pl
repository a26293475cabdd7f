#!/usr/bin/env perl
# Writes the tables in this folder: what a workbook keeps of packages whose saved bytes the tests know. Perl's own
# zlib and base64 make them, so that they prove the add-in's format from outside. Run it here, by hand, when a table
# is to be added; the build and the tests need its output only. It needs the modules Compress::Zlib and MIME::Base64, which
# come with Perl (Debian's package perl).
use strict;
use warnings;
use Compress::Zlib;
use MIME::Base64;

use constant CELL => 32000;
my @fixed = ('Scripted', 'StandAlonePackage11', '{7C0C0A57-5D0E-4F53-9B0B-0C8B8B3C55A1}', '');

# The states. Marsaglia's xorshift32 gives bytes that do not compress; with 64 different ones they compress a little.
sub repeated { my ($count) = @_; return 'Q' x $count }
sub noise {
    my ($count) = @_;
    my ($x, $bytes) = (2463534242, '');
    for (1 .. $count) {
        $x ^= ($x << 13) & 0xFFFFFFFF;
        $x ^= $x >> 17;
        $x ^= ($x << 5) & 0xFFFFFFFF;
        $bytes .= chr($x & 0xFF);
    }
    return $bytes;
}
sub letters { my ($count) = @_; return join '', map { chr(32 + (ord($_) & 0x3F)) } split //, noise($count) }

sub base64 { return encode_base64($_[0], '') }

sub compressed {
    my ($bytes) = @_;
    my ($stream, $status) = deflateInit(-Level => 9, -WindowBits => 15, -MemLevel => 8);
    die "zlib: $status" unless $status == Z_OK;
    my ($body) = $stream->deflate($bytes);
    my ($end) = $stream->flush();
    return $body . $end;
}

sub state_text {
    my ($bytes) = @_;
    my $plain = base64($bytes);
    if (length($bytes) > 500) {
        my $small = base64(compressed($bytes));
        return "#$small" if length($small) < length($plain) - 100;
    }
    return $plain;
}

sub cells {
    my ($name, $bytes) = @_;
    my $text = state_text($bytes);
    return ($name, @fixed, $text) if length($text) < CELL;
    my @pieces = map { substr($text, $_ * CELL, CELL) } 0 .. int(length($text) / CELL) - 1;
    push @pieces, substr($text, CELL * @pieces);
    return ($name, @fixed, '6', @pieces);
}

sub table {
    my ($file, @rows) = @_;
    my $columns = 0;
    for (@rows) { $columns = @$_ if @$_ > $columns }
    open my $out, '>:raw', "$file.csv" or die "$file.csv: $!";
    print $out join(',', @$_, ('') x ($columns - @$_)), "\r\n" for @rows;
    close $out or die "$file.csv: $!";
}

table('empty', [cells('Gas', '')]);
table('bytes_500', [cells('Gas', repeated(500))]);
table('bytes_501', [cells('Gas', repeated(501))]);
table('text_32000', [cells('Gas', noise(24000))]);
table('text_70000', [cells('Gas', noise(52500))]);
table('compressed_pieces', [cells('Gas', letters(60000))]);
table('two_widths', [cells('Large', noise(52500))], [cells('Small', repeated(501))]);
